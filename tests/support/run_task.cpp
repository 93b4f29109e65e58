// Runs the command of a task as the Task Scheduler does: hands "Command" and "Arguments" of its XML
// to CreateProcessW unchanged, but for environment variables. Ends with that command's exit code.
//
// usage: run_task TASK.xml [TEXT REPLACEMENT]...   (turns the sample's paths into those of a test)
#include "sweep/windows_api.h"
#include "text/entities.h"

#include <QFile>
#include <QRegExp>

extern "C" int wmain(int argc, wchar_t **argv);

int wmain(int argc, wchar_t **argv)
{
    QFile file(QString::fromWCharArray(argv[1]));
    file.open(QIODevice::ReadOnly);
    const QByteArray utf16 = file.readAll();
    const auto *units = reinterpret_cast<const wchar_t *>(utf16.constData());
    // From the last "Command" on. The comment of the XML comes before, and has other arguments.
    QString line = fromWChar(units, utf16.size() / 2).section(QLatin1String("<Command>"), -1);
    line = line.section(QLatin1String("</Arguments>"), 0, 0);
    line.replace(QRegExp(QLatin1String("</Command>\\s*<Arguments>")), QLatin1String(" "));
    line = decodeEntities(line);
    for (int i = 2; i + 1 < argc; i += 2)
        line.replace(QString::fromWCharArray(argv[i]), QString::fromWCharArray(argv[i + 1]));

    wchar_t expanded[4096];
    ExpandEnvironmentStringsW(toWChar(line), expanded, 4096);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started = {};
    DWORD exitCode = 125; // when no process is started
    CreateProcessW(nullptr, expanded, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                   &started);
    WaitForSingleObject(started.hProcess, INFINITE);
    GetExitCodeProcess(started.hProcess, &exitCode);
    return static_cast<int>(exitCode);
}
