// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Logging.h"

#include "StorageManager.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTextStream>

#include <cstdlib>

namespace
{

QString levelWord(QtMsgType type)
{
    switch (type) {
    case QtInfoMsg:
        return QStringLiteral("INFO");
    case QtWarningMsg:
        return QStringLiteral("WARN");
    case QtCriticalMsg:
        return QStringLiteral("CRITICAL");
    case QtFatalMsg:
        return QStringLiteral("FATAL");
    default:
        return QStringLiteral("DEBUG");
    }
}

/// Opens the file, or another one after the application has got its name: what Qt logs before that
/// lies elsewhere, and the rest shall not.
bool openLogFile(QFile& logFile)
{
    const QString path = QDir(StorageManager::appDataDir()).filePath(QStringLiteral("debug.log"));
    if (logFile.isOpen() && logFile.fileName() == path)
        return true;
    logFile.close();
    logFile.setFileName(path);
    return logFile.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text);
}

} // namespace

void fileMessageHandler(QtMsgType type, const QMessageLogContext& context, const QString& msg)
{
    Q_UNUSED(context);
    // Never destroyed, since messages come until the very end of the process, from the destructors
    // of other statics too.
    static QFile& logFile = *new QFile;
    if (openLogFile(logFile)) {
        QTextStream stream(&logFile);
        stream << QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"))
               << " [" << levelWord(type) << "] " << msg << Qt::endl;
    }
    if (type == QtFatalMsg)
        std::abort();
}
