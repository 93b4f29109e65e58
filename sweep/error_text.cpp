#include "sweep/error_text.h"

#include "sweep/windows_api.h"

#include <algorithm>

namespace {

constexpr DWORD userLanguage = 0x400; // neutral language, default sublanguage
constexpr DWORD messageBufferLength = 500;

struct CodeText
{
    quint32 code;
    const char *text;
};

constexpr CodeText exceptionTexts[] = {
    { 0xC0000005,
      "EXCEPTION: The thread tried to read from or write to a virtual address for which it does "
      "not have the appropriate access. (Possible NULL Pointer)" },
    { 0x80000002,
      "EXCEPTION: The thread tried to read or write data that is misaligned on hardware that does "
      "not provide alignment. For example, 16-bit values must be aligned on 2-byte boundaries; "
      "32-bit values on 4-byte boundaries, and so on." },
    { 0x80000003, "EXCEPTION: A breakpoint was encountered." },
    { 0x80000004, "EXCEPTION: A trace trap or other single-instruction mechanism signaled that one "
                  "instruction has been executed." },
    { 0xC0000006,
      "EXCEPTION: The thread tried to access a page that was not present, and the system was "
      "unable to load the page. For example, this exception might occur if a network connection "
      "is lost while running a program over the network." },
    { 0xC000001D, "EXCEPTION: The thread tried to execute an invalid instruction." },
    { 0xC0000025,
      "EXCEPTION: The thread tried to continue execution after a noncontinuable exception "
      "occurred." },
    { 0xC0000026,
      "EXCEPTION: An exception handler returned an invalid disposition to the exception "
      "dispatcher. Programmers using a high-level language such as C should never encounter this "
      "exception." },
    { 0xC000008C,
      "EXCEPTION: The thread tried to access an array element that is out of bounds and the "
      "underlying hardware supports bounds checking." },
    { 0xC000008D,
      "EXCEPTION: One of the operands in a floating-point operation is denormal. A denormal value "
      "is one that is too small to represent as a standard floating-point value." },
    { 0xC000008E,
      "EXCEPTION: The thread tried to divide a floating-point value by a floating-point divisor "
      "of zero." },
    { 0xC000008F,
      "EXCEPTION: The result of a floating-point operation cannot be represented exactly as a "
      "decimal fraction." },
    { 0xC0000090,
      "EXCEPTION: This exception represents any floating-point exception not included in this "
      "list." },
    { 0xC0000091,
      "EXCEPTION: The exponent of a floating-point operation is greater than the magnitude "
      "allowed by the corresponding type." },
    { 0xC0000092,
      "EXCEPTION: The stack overflowed or underflowed as the result of a floating-point "
      "operation." },
    { 0xC0000093,
      "EXCEPTION: The exponent of a floating-point operation is less than the magnitude allowed "
      "by the corresponding type." },
    { 0xC0000094,
      "EXCEPTION: The thread tried to divide an integer value by an integer divisor of zero." },
    { 0xC0000095,
      "EXCEPTION: The result of an integer operation caused a carry out of the most significant "
      "bit of the result." },
    { 0xC0000096,
      "EXCEPTION: The thread tried to execute an instruction whose operation is not allowed in "
      "the current machine mode." },
    { 0xC00000FD, "EXCEPTION: The thread used up its stack." },
};

/// Length of a message without its final line break: one CR LF, or either alone.
template <typename Unit>
DWORD lengthWithoutLineBreak(const Unit *message, DWORD length)
{
    if (length > 0 && message[length - 1] == Unit('\n'))
        --length;
    if (length > 0 && message[length - 1] == Unit('\r'))
        --length;
    return length;
}

QString withCode(const char *before, quint32 code, const char *after)
{
    return QLatin1String(before) + QString::number(static_cast<qint32>(code))
           + QLatin1String(after);
}

/// The message of the system's tables; empty when there is none. FormatMessageW fails for a message
/// with inserts, since it gets no values for them.
QString systemMessage(quint32 code)
{
    wchar_t message[messageBufferLength];
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code, userLanguage,
                                        message, messageBufferLength, nullptr);
    return fromWChar(message, static_cast<int>(lengthWithoutLineBreak(message, length)));
}

/// Fills `text` with the message of ntdll's table, its inserts unchanged. False without one.
bool findStatusMessage(quint32 code, FixedNarrowString500 &text)
{
    char message[messageBufferLength];
    const DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_HMODULE | FORMAT_MESSAGE_IGNORE_INSERTS,
                                        GetModuleHandleA("ntdll.dll"), code, userLanguage, message,
                                        messageBufferLength, nullptr);
    text.appendUnits(message, static_cast<qint32>(lengthWithoutLineBreak(message, length)));
    return length > 0;
}

FixedWideString textWithoutSystemMessage(quint32 code)
{
    // Frozen: bytes are widened with their sign, so 0xFC (an umlaut) from ntdll.dll becomes U+FFFC.
    const auto result = fixedText<FixedWideString>(exceptionCodeText(code).value);
    if (!result.isEmpty())
        return result;
    return fixedText<FixedWideString>(withCode("Error ", code, "."));
}

FixedWideString errorText(quint32 code)
{
    if (code == ERROR_SUCCESS)
        return fixedText<FixedWideString>("No Error.");
    if (code == ERROR_MOD_NOT_FOUND)
        return fixedText<FixedWideString>("A DLL is missing.");
    const QString message = systemMessage(code);
    if (message.isEmpty())
        return textWithoutSystemMessage(code);
    return fixedText<FixedWideString>(withCode("Error ", code, ": ") + message + QLatin1Char('.'));
}

} // namespace

FixedWideString systemErrorText(quint32 code)
{
    if (code == useLastError)
        code = GetLastError();
    FixedWideString text = errorText(code);
    std::replace(text.value, text.value + text.length, u'\n', u' ');
    std::replace(text.value, text.value + text.length, u'\r', u' ');
    return text;
}

FixedNarrowString500 exceptionCodeText(quint32 code)
{
    for (const CodeText &entry : exceptionTexts)
        if (entry.code == code)
            return fixedText<FixedNarrowString500>(entry.text);
    FixedNarrowString500 text;
    if (!findStatusMessage(code, text))
        text.assignLatin1(withCode("ERROR code ", code, ". (No system message found)"));
    return text;
}
