// Runs the command of a task as the Task Scheduler does: hands "Command" and "Arguments" of its XML
// to CreateProcessW unchanged, but for environment variables. Ends with the exit code of that
// command.
//
// usage: run_task TASK.xml [TEXT REPLACEMENT]...
// The replacements turn the sample's paths into those of a test.
#include "sweep/windows_api.h"
#include "text/entities.h"

#include <QFile>

extern "C" int wmain(int argc, wchar_t **argv);

namespace {

constexpr int exitNotRun = 125;

/// The text of the last element with this name; the comment of the XML shows others.
QString textOf(const QString &xml, const char *element)
{
    const QString start = QString::fromLatin1("<%1>").arg(QLatin1String(element));
    return decodeEntities(xml.section(start, -1).section(QLatin1Char('<'), 0, 0));
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    QFile file(QString::fromWCharArray(argv[1]));
    if (!file.open(QIODevice::ReadOnly))
        return exitNotRun;
    const QByteArray utf16 = file.readAll();
    const QString xml =
        fromWChar(reinterpret_cast<const wchar_t *>(utf16.constData()), utf16.size() / 2);
    QString line = textOf(xml, "Command") + QLatin1Char(' ') + textOf(xml, "Arguments");
    for (int i = 2; i + 1 < argc; i += 2)
        line.replace(QString::fromWCharArray(argv[i]), QString::fromWCharArray(argv[i + 1]));

    wchar_t expanded[4096];
    ExpandEnvironmentStringsW(toWChar(line), expanded, 4096);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (CreateProcessW(nullptr, expanded, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                       &process)
        == 0)
        return exitNotRun;
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD exitCode = exitNotRun;
    GetExitCodeProcess(process.hProcess, &exitCode);
    return static_cast<int>(exitCode);
}
