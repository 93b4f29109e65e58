// Before any other header: the C++ library's own headers would otherwise switch <stdio.h> over to
// the compiler's replacement of the run-time library's formatted print.
#define __USE_MINGW_ANSI_STDIO 0
#include <stdio.h>

#include "sweep/console.h"

#include <cstdarg>

void print(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    vprintf(format, arguments);
    va_end(arguments);
}

void flushOutput() { fflush(stdout); }
