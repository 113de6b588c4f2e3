// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Logging.h"

#include "Files.h"
#include "StorageManager.h"

#include <QBuffer>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QMutex>
#include <QMutexLocker>

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

/// In one line, whatever the text is made of: a file's name or a web address could hold what looks
/// like a further message otherwise.
QString inOneLine(const QString& text)
{
    QString line;
    line.reserve(text.size());
    for (const QChar character : text) {
        const QChar::Category category = character.category();
        if (character == u'\n')
            line += QLatin1String("\\n");
        else if (character == u'\r')
            line += QLatin1String("\\r");
        else if ((category == QChar::Other_Control && character != u'\t') ||
                 category == QChar::Separator_Line || category == QChar::Separator_Paragraph)
            line += QStringLiteral("\\u%1").arg(uint(character.unicode()), 4, 16, QLatin1Char('0'));
        else
            line += character;
    }
    return line;
}

/// With the line end of the system.
QByteArray bytesOf(const QString& line)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly | QIODevice::Text);
    buffer.write(line.toUtf8() + '\n');
    return buffer.data();
}

class LogFile
{
public:
    void append(const QByteArray& line)
    {
        const QMutexLocker locker(&m_mutex);
        if (!m_file.isOpen() && !open())
            return;
        // Not every system appends by itself, and copies of the program in two directories share
        // the log.
        m_file.seek(m_file.size());
        m_file.write(line);
    }

    void close()
    {
        const QMutexLocker locker(&m_mutex);
        m_file.close();
    }

private:
    bool open()
    {
        m_file.setFileName(
            QDir(StorageManager::appDataDir()).filePath(QStringLiteral("debug.log")));
        // Unbuffered, so that each line is one write.
        if (!m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
            return false;
        makePrivate(m_file);
        return true;
    }

    QMutex m_mutex;
    QFile m_file;
};

LogFile& logFile()
{
    // Never destroyed, since messages come until the very end of the process, from the destructors
    // of other statics too.
    static LogFile& file = *new LogFile;
    return file;
}

} // namespace

void fileMessageHandler(QtMsgType type, const QMessageLogContext& context, const QString& msg)
{
    Q_UNUSED(context);
    // What Qt says about the writing itself is dropped, for the file is locked meanwhile.
    thread_local bool isWriting = false;
    if (!isWriting) {
        isWriting = true;
        const QString stamp =
            QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
        logFile().append(bytesOf(stamp + QStringLiteral(" [") + levelWord(type) +
                                 QStringLiteral("] ") + inOneLine(msg)));
        isWriting = false;
    }
    if (type == QtFatalMsg)
        std::abort();
}

void reopenLog()
{
    logFile().close();
}
