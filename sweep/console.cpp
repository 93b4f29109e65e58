// Before any other header: the C++ library's own headers would otherwise switch <stdio.h> over to
// the compiler's replacement of the run-time library's formatted print.
#define __USE_MINGW_ANSI_STDIO 0 // NOLINT: the name is theirs
#include <stdio.h>               // NOLINT: <cstdio> would read it too late

#include "sweep/console.h"

#include <cstdarg>
#include <cstdlib>
#include <vector>

namespace {

void ignoreInvalidParameter(const wchar_t * /*expression*/, const wchar_t * /*function*/,
                            const wchar_t * /*file*/, unsigned /*line*/, uintptr_t /*reserved*/)
{
}

/// While this lives, the run-time library returns from what it takes for an invalid parameter. Its
/// own way is to end the program; the compiler's start-up code changes that, but not as a promise.
struct QuietInvalidParameters
{
    QuietInvalidParameters() : before(_set_invalid_parameter_handler(ignoreInvalidParameter)) {}
    ~QuietInvalidParameters() { _set_invalid_parameter_handler(before); }
    QuietInvalidParameters(const QuietInvalidParameters &) = delete;
    QuietInvalidParameters &operator=(const QuietInvalidParameters &) = delete;

    _invalid_parameter_handler before;
};

} // namespace

void print(const char *format, ...) // NOLINT(cert-dcl50-cpp): like the library's own
{
    va_list arguments; // NOLINT(cppcoreguidelines-init-variables): the next line does it
    va_start(arguments, format);
    vprintf(format, arguments);
    va_end(arguments);
}

void printAsFormat(const QByteArray &format)
{
    // On x86-64 Windows a list of arguments is a pointer to slots of 8 bytes, and no conversion
    // takes more slots than it has characters ("%*d" takes two).
    std::vector<quint64> slots(static_cast<std::size_t>(format.size()) + 1, 0);
    static_assert(sizeof(va_list) == sizeof(char *), "x86-64 Windows");
    const QuietInvalidParameters quiet;
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): it points to the slots
    vprintf(format.constData(), reinterpret_cast<va_list>(slots.data()));
}

void flushOutput() { fflush(stdout); }
