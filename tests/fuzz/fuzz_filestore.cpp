// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FileStore.h"
#include "FileTree.h"
#include "NameBytes.h"
#include "NameMatcher.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace
{

using FileTree::Tree;

constexpr int kMostNames = 8;
constexpr int kMostRounds = 40;

void require(bool condition)
{
    if (!condition)
        std::abort();
}

/// The input, byte by byte; behind its end there is nothing but 0.
class Input
{
public:
    Input(const uint8_t* data, size_t size) : m_data(data), m_left(size) {}

    bool isAtEnd() const { return m_left == 0; }

    int take(int bound)
    {
        if (isAtEnd())
            return 0;
        --m_left;
        return *m_data++ % bound;
    }

private:
    const uint8_t* m_data;
    size_t m_left;
};

/// Of any characters, among them halves of pairs and ends of texts, but no separators.
QString takeName(Input& input)
{
    QString name;
    for (int left = 1 + input.take(20); left > 0; --left) {
        const int high = input.take(256);
        const QChar unit(static_cast<char16_t>(high << 8 | input.take(256)));
        name += unit == '/' ? QChar('x') : unit;
    }
    return name;
}

QString takePath(Input& input, const Tree& tree, const QStringList& names)
{
    const QStringList folders = tree.folders();
    const QString& folder = folders.at(input.take(static_cast<int>(folders.size())));
    return FileTree::joined(folder, names.at(input.take(static_cast<int>(names.size()))));
}

/// Lets something at the path come, go, or become something else.
void change(Input& input, Tree& tree, const QString& path, const QStringList& names)
{
    enum { Gone, File, Folder, FullFolder, Kinds };
    const int kind = input.take(Kinds);
    tree.remove(path);
    if (kind == Gone)
        return;
    tree.entries.insert(path, kind != File);
    if (kind != FullFolder)
        return;
    for (const QString& name : names)
        tree.entries.insert(FileTree::joined(path, name), input.take(3) == 0);
}

void checkSearch(const FileStore& store, const QString& name)
{
    const QByteArray wanted = NameBytes::fromText(name.toLower());
    std::vector<FileStore::Hit> hits;
    store.search(NameMatcher(wanted), hits);
    auto hit = hits.cbegin();
    for (FileStore::Id id = store.begin(); id != store.end(); id = store.next(id)) {
        require(store.lowerName(id) == store.name(id).toLower());
        if (!NameBytes::fromText(store.lowerName(id)).contains(wanted))
            continue;
        require(hit != hits.cend() && hit->id == id && bool(hit->isDir) == store.isDir(id));
        ++hit;
    }
    require(hit == hits.cend());
}

} // namespace

/// Whatever names come and go, in whatever order: the list holds what the tree does, knows whether
/// something has changed, and finds each name.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Input input(data, size);
    QStringList names;
    for (int left = 1 + input.take(kMostNames); left > 0; --left)
        names.append(takeName(input));
    Tree tree;
    FileStore store("/r");
    for (int round = 0; round < kMostRounds && !input.isAtEnd(); ++round) {
        QStringList due;
        for (int left = 1 + input.take(4); left > 0; --left) {
            const QString path = takePath(input, tree, names);
            change(input, tree, path, names);
            due.append(path);
        }
        const QStringList before = FileTree::entriesIn(store);
        const FileStore::Renewal renewal =
            FileTree::renew(store, tree, FileTree::withoutNested(due));
        const QStringList after = FileTree::entriesIn(store);
        require(FileTree::sorted(after) == FileTree::entriesOf(tree));
        require(renewal.hasChanged == (after != before));
        require(store.size() == tree.entries.size() && FileTree::hasFoldersOf(store, tree));
        checkSearch(store, names.at(input.take(static_cast<int>(names.size()))));
    }
    return 0;
}
