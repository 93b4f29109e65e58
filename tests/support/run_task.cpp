// Starts the command of a task as the Task Scheduler does: hands "Command" and "Arguments" of its
// XML to CreateProcessW, unchanged but for %SystemRoot%. Ends with that command's exit code.
//
// usage: run_task TASK.xml [TEXT REPLACEMENT]...   (turns the sample's texts into those of a test)
#include "sweep/windows_api.h"
#include "text/entities.h"

#include <QFile>
#include <QRegExp>

#include <process.h>

extern "C" int wmain(int argc, wchar_t **argv);

int wmain(int argc, wchar_t **argv)
{
    QFile file(QString::fromWCharArray(argv[1]));
    file.open(QIODevice::ReadOnly);
    const QByteArray utf16 = file.readAll();
    const auto *units = reinterpret_cast<const wchar_t *>(utf16.constData());
    // From the last "Command" on. The comment of the XML comes before, and has other arguments.
    QString line = fromWChar(units, utf16.size() / 2).section(QLatin1String("<Command>"), -1);
    line = decodeEntities(line.section(QLatin1String("</Arguments>"), 0, 0));
    line.replace(QRegExp(QLatin1String("</Command>\\s*<Arguments>")), QLatin1String(" "));
    const QByteArray systemRoot = qgetenv("SystemRoot");
    line.replace(QLatin1String("%SystemRoot%"), QString::fromLatin1(systemRoot.constData()));
    for (int i = 2; i + 1 < argc; i += 2) {
        const QString text = QString::fromWCharArray(argv[i]);
        if (!line.contains(text))
            return 125; // started unchanged, the command could delete for real
        line.replace(text, QString::fromWCharArray(argv[i + 1]));
    }
    // This function quotes nothing. It returns -1 when it starts nothing.
    const QString program = line.section(QLatin1Char(' '), 0, 0);
    return static_cast<int>(_wspawnl(_P_WAIT, toWChar(program), toWChar(line), nullptr));
}
