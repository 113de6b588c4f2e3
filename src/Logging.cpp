// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Logging.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
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

bool openLogFile(QFile& logFile)
{
    QString dataDir = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    if (dataDir.isEmpty())
        dataDir = QCoreApplication::applicationDirPath();
    const QDir dir(dataDir);
    if (!dir.exists())
        dir.mkpath(QStringLiteral("."));
    logFile.setFileName(dir.filePath(QStringLiteral("debug.log")));
    return logFile.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text);
}

} // namespace

void fileMessageHandler(QtMsgType type, const QMessageLogContext& context, const QString& msg)
{
    Q_UNUSED(context);
    // Never destroyed, since messages come until the very end of the process, from the destructors
    // of other statics too.
    static QFile& logFile = *new QFile;
    if (logFile.isOpen() || openLogFile(logFile)) {
        QTextStream stream(&logFile);
        stream << QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"))
               << " [" << levelWord(type) << "] " << msg << Qt::endl;
    }
    if (type == QtFatalMsg)
        std::abort();
}
