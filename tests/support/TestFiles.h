// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <memory>

/// Makes what tests find on disk.
namespace TestFiles
{

/// Writes a file, replacing what was there, and makes the directories above it.
/// \returns false if it can't be written whole, as where a directory has that name.
bool write(const QString& path, const QByteArray& content = QByteArray());

/// A new directory in the private home, gone with the object. Fatal if it can't be made.
std::unique_ptr<QTemporaryDir> newDirectory(const QString& name);

} // namespace TestFiles

/// The directory that each function of a test fills anew, for a test to inherit. Paths are native.
class TestTree
{
protected:
    /// Begins with an empty directory; what there was goes.
    void makeRoot();

    QString root() const;
    /// \param rel relative to the root, with either kind of separator.
    QString path(const QString& rel) const;
    /// The path as the system has it.
    QByteArray bytes(const QString& rel) const;

    /// An empty file, in directories that are made as well. Fails the test if that can't be.
    void makeFile(const QString& rel) const { write(rel); }
    /// The same with a content.
    void write(const QString& rel, const QByteArray& content = QByteArray()) const;
    /// With those above it.
    void makeDirectory(const QString& rel) const;

private:
    std::unique_ptr<QTemporaryDir> m_root;
};
