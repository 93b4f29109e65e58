// Runs the command of a task as the Task Scheduler does: hands "Command" and "Arguments" of its XML
// to CreateProcessW unchanged, but for environment variables. Ends with that command's exit code.
//
// usage: run_task TASK.xml [TEXT REPLACEMENT]...   (turns the sample's paths into those of a test)
#include "sweep/windows_api.h"
#include "text/entities.h"

#include <QFile>

extern "C" int wmain(int argc, wchar_t **argv);

int wmain(int argc, wchar_t **argv)
{
    QFile file(QString::fromWCharArray(argv[1]));
    file.open(QIODevice::ReadOnly);
    const QByteArray utf16 = file.readAll();
    const QString xml =
        fromWChar(reinterpret_cast<const wchar_t *>(utf16.constData()), utf16.size() / 2);
    // The last element of a name counts. The comment of the XML shows others.
    const auto textOf = [&xml](const char *tag) {
        return xml.section(QLatin1String(tag), -1).section(QLatin1Char('<'), 0, 0);
    };
    QString line = decodeEntities(textOf("<Command>") + QLatin1Char(' ') + textOf("<Arguments>"));
    for (int i = 2; i + 1 < argc; i += 2)
        line.replace(QString::fromWCharArray(argv[i]), QString::fromWCharArray(argv[i + 1]));

    wchar_t expanded[4096];
    ExpandEnvironmentStringsW(toWChar(line), expanded, 4096);
    STARTUPINFOW startup = {};
    PROCESS_INFORMATION process = {};
    CreateProcessW(nullptr, expanded, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                   &process);
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD exitCode = 125; // when no process was started
    GetExitCodeProcess(process.hProcess, &exitCode);
    return static_cast<int>(exitCode);
}
