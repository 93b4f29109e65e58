#include "sweep/console.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

void ignoreInvalidParameter(const wchar_t * /*expression*/, const wchar_t * /*function*/,
                            const wchar_t * /*file*/, unsigned /*line*/, uintptr_t /*reserved*/)
{
}

/// Makes the C run-time ignore invalid parameters for the lifetime of this object. By default it
/// ends the program; MinGW's start-up code happens to disable that, but does not guarantee it.
struct QuietInvalidParameters
{
    QuietInvalidParameters() : before(_set_invalid_parameter_handler(ignoreInvalidParameter)) {}
    ~QuietInvalidParameters() { _set_invalid_parameter_handler(before); }
    QuietInvalidParameters(const QuietInvalidParameters &) = delete;
    QuietInvalidParameters &operator=(const QuietInvalidParameters &) = delete;

    _invalid_parameter_handler before;
};

} // namespace

void print(const char *format, ...) // NOLINT(cert-dcl50-cpp): like printf
{
    va_list arguments; // NOLINT(cppcoreguidelines-init-variables): va_start does it
    va_start(arguments, format);
    vprintf(format, arguments);
    va_end(arguments);
}

void printAsFormat(const QByteArray &format)
{
    // On x86-64 Windows an argument list is a pointer to values of 8 bytes. No conversion takes
    // more values than it has characters ("%*d" takes two).
    std::vector<quint64> values(static_cast<std::size_t>(format.size()) + 1, 0);
    static_assert(sizeof(va_list) == sizeof(char *), "x86-64 Windows");
    const QuietInvalidParameters quiet;
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): it points to the values
    vprintf(format.constData(), reinterpret_cast<va_list>(values.data()));
}

void flushOutput() { fflush(stdout); }
