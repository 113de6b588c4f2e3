// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "TestFiles.h"

#include "TestHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

bool TestFiles::write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
           file.write(content) == content.size() && file.flush();
}

std::unique_ptr<QTemporaryDir> TestFiles::newDirectory(const QString& name)
{
    auto directory = std::make_unique<QTemporaryDir>(TestHome::path() + '/' + name + "-XXXXXX");
    if (!directory->isValid())
        qFatal("no temporary directory: %s", qPrintable(directory->errorString()));
    return directory;
}

void TestTree::makeRoot()
{
    m_root = TestFiles::newDirectory(QStringLiteral("tree"));
}

QString TestTree::root() const
{
    return QDir::toNativeSeparators(m_root->path());
}

QString TestTree::path(const QString& rel) const
{
    return QDir::toNativeSeparators(m_root->filePath(rel));
}

QByteArray TestTree::bytes(const QString& rel) const
{
    return QFile::encodeName(path(rel));
}

void TestTree::write(const QString& rel, const QByteArray& content) const
{
    QVERIFY2(TestFiles::write(path(rel), content), qPrintable(rel));
}

void TestTree::makeDirectory(const QString& rel) const
{
    QVERIFY2(QDir().mkpath(path(rel)), qPrintable(rel));
}
