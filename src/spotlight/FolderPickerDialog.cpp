// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FolderPickerDialog.h"

#include "AutoQuitBlocker.h"
#include "CaseFold.h"
#include "CustomMessageBox.h"
#include "FileIndex.h"
#include "FolderFilter.h"
#include "FolderRowDelegate.h"
#include "Localization.h"
#include "Theme.h"
#include "ToolTips.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFrame>
#include <QHBoxLayout>
#include <QItemSelection>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QSet>
#include <QStandardPaths>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <utility>

namespace
{

constexpr int kCardWidth = 460;
constexpr int kListHeight = 220;

QString homeFolder()
{
    return QDir::toNativeSeparators(QStandardPaths::writableLocation(QStandardPaths::HomeLocation));
}

QLabel* makeText(const QString& text, const QString& style)
{
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setStyleSheet(style);
    return label;
}

/// One range for neighbours, because a selection costs as much as it has ranges.
QItemSelection selectionOf(const QAbstractItemModel& model, const QList<int>& rows)
{
    QItemSelection selection;
    for (const int row : rows) {
        const QModelIndex index = model.index(row, 0);
        if (!selection.isEmpty() && selection.constLast().bottom() == row - 1)
            selection.last() = QItemSelectionRange(selection.constLast().topLeft(), index);
        else
            selection.append(QItemSelectionRange(index));
    }
    return selection;
}

} // namespace

FolderPickerDialog::FolderPickerDialog(QWidget* parent)
    : FramelessDialog(parent, Tr::t("folderpick.title"), StrongShadow, CardPad)
{
    card()->setMinimumWidth(kCardWidth);
    addTexts();
    addList();
    addButtons();
    buildRows(FolderFilter::folders());
    m_list->setFocus();
}

void FolderPickerDialog::addTexts()
{
    const ColorTokens c = Theme::colors();
    rows()->addWidget(makeText(windowTitle(), Theme::dialogTitleStyle(c)));
    QLabel* hint = makeText(Tr::t("folderpick.hint"),
                            Theme::textStyle(c.onSurfaceVariant, FontTokens::SizeMd));
    hint->setWordWrap(true);
    rows()->addWidget(hint);
}

void FolderPickerDialog::addList()
{
    const ColorTokens c = Theme::colors();
    m_list = new QListWidget(this);
    m_list->setSelectionMode(QAbstractItemView::MultiSelection);
    m_list->setStyleSheet(
        QStringLiteral("QListWidget { background: %1; border: 1px solid %2; border-radius: %3px; "
                       "outline: 0; padding: 4px; }")
            .arg(Theme::fieldIdleBg(c), c.outline, QString::number(Theme::Rad_Sm)));
    m_list->setItemDelegate(new FolderRowDelegate(
        c, [this](const QModelIndex& index) { return isRowChecked(index); }, m_list));
    m_list->setMinimumHeight(kListHeight);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->setResizeMode(QListView::Adjust); // the rows are as wide as the view
    m_list->setMouseTracking(true);           // they light up under the pointer
    m_list->setAccessibleName(windowTitle());
    m_list->installEventFilter(this);
    rows()->addWidget(m_list, 1);
    connect(m_list, &QListWidget::itemSelectionChanged, this,
            &FolderPickerDialog::selectionChanged);
}

void FolderPickerDialog::addButtons()
{
    const ColorTokens c = Theme::colors();
    QHBoxLayout* row = addButtonRow(rows(), 0);
    QPushButton* other =
        addButton(row, Tr::t("folderpick.add_other"), Theme::actionBtnStyle(c, QString()));
    row->addStretch();
    QPushButton* cancel = addButton(row, Tr::t("dialog.btn_cancel"),
                                    Theme::actionBtnStyle(c, QStringLiteral("transparent")));
    QPushButton* ok = addButton(row, Tr::t("dialog.btn_ok"), Theme::primaryBtnStyle(c));
    for (QPushButton* button : {other, cancel, ok})
        button->setCursor(Qt::PointingHandCursor);
    ok->setDefault(true);
    connect(other, &QPushButton::clicked, this, &FolderPickerDialog::addOtherFolder);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
}

void FolderPickerDialog::buildRows(const QStringList& checked)
{
    m_allItem = nullptr;
    m_list->clear();
    m_allItem = addRow(Tr::t("folderpick.all"), QString(), Tr::t("folderpick.all_tip"));
    const QStringList paths = offeredFolders();
    const QStringList labels = rowLabels(paths);
    QSet<QString> keys;
    for (const QString& path : checked)
        keys.insert(CaseFold::keyOf(path));
    QList<int> checkedRows;
    for (qsizetype i = 0; i < paths.size(); ++i) {
        const QString& path = paths.at(i);
        addRow(labels.at(i), path, path);
        if (keys.contains(CaseFold::keyOf(path)))
            checkedRows.append(m_list->count() - 1);
    }
    m_list->selectionModel()->select(selectionOf(*m_list->model(), checkedRows),
                                     QItemSelectionModel::ClearAndSelect);
}

QListWidgetItem* FolderPickerDialog::addRow(const QString& text, const QString& key,
                                            const QString& toolTip)
{
    auto* item = new QListWidgetItem(text);
    item->setData(Qt::UserRole, key);
    item->setToolTip(ToolTips::plain(toolTip));
    m_list->addItem(item);
    return item;
}

QStringList FolderPickerDialog::offeredFolders() const
{
    QStringList folders;
    QSet<QString> keys;
    for (const QStringList& some : {defaultFolders(), FolderFilter::folders(), m_extra}) {
        for (const QString& path : some) {
            const qsizetype known = keys.size();
            keys.insert(CaseFold::keyOf(path));
            if (keys.size() > known)
                folders.append(path);
        }
    }
    return folders;
}

QStringList FolderPickerDialog::rowLabels(const QStringList& paths)
{
    QStringList labels;
    labels.reserve(paths.size());
    if (!FileIndex::isReady()) {
        for (const QString& path : paths)
            labels.append(FolderFilter::nameOf(path));
        return labels;
    }
    const QVector<qsizetype> counts = FileIndex::countUnder(paths);
    for (qsizetype i = 0; i < paths.size(); ++i)
        labels.append(
            Tr::t("folderpick.row")
                .arg(FolderFilter::nameOf(paths.at(i)), QLocale().toString(counts.at(i))));
    return labels;
}

QStringList FolderPickerDialog::defaultFolders()
{
    static constexpr std::array locations = {
        QStandardPaths::DesktopLocation,   QStandardPaths::DownloadLocation,
        QStandardPaths::DocumentsLocation, QStandardPaths::PicturesLocation,
        QStandardPaths::MusicLocation,     QStandardPaths::MoviesLocation,
    };
    QStringList folders;
    for (const QStandardPaths::StandardLocation location : locations) {
        const QString path = QDir::toNativeSeparators(QStandardPaths::writableLocation(location));
        if (!path.isEmpty() && QFileInfo(path).isDir() && !containsPath(folders, path))
            folders.append(path);
    }
    return folders;
}

bool FolderPickerDialog::containsPath(const QStringList& paths, const QString& path)
{
    return paths.contains(path, Qt::CaseInsensitive);
}

bool FolderPickerDialog::isRowChecked(const QModelIndex& index) const
{
    const QListWidgetItem* item = index.isValid() ? m_list->item(index.row()) : nullptr;
    if (!item)
        return false;
    // The row for all folders is never selected itself.
    return item == m_allItem ? !m_list->selectionModel()->hasSelection() : item->isSelected();
}

QStringList FolderPickerDialog::chosen() const
{
    QModelIndexList selected = m_list->selectionModel()->selectedIndexes();
    std::sort(selected.begin(), selected.end());
    QStringList paths;
    for (const QModelIndex& index : std::as_const(selected)) {
        const QString key = index.data(Qt::UserRole).toString();
        if (!key.isEmpty())
            paths.append(key);
    }
    return paths;
}

void FolderPickerDialog::selectionChanged()
{
    if (m_allItem && m_allItem->isSelected())
        m_list->clearSelection();
    m_list->viewport()->update(); // the first row's circle depends on all others
}

void FolderPickerDialog::addOtherFolder()
{
    const AutoQuitBlocker blocker;
    const QString home = homeFolder();
    const QString picked = QFileDialog::getExistingDirectory(this, Tr::t("folderpick.add_other"),
                                                             home, QFileDialog::ShowDirsOnly);
    if (picked.isEmpty())
        return;
    const QString dir = QDir::toNativeSeparators(picked);
    const bool isHome = dir.compare(home, Qt::CaseInsensitive) == 0;
    if (!isHome && !FolderFilter::isUnder(dir, home)) {
        // The index ends at the home, so such a folder would never have a result.
        CustomMessageBox::warning(this, Tr::t("folderpick.outside_title"),
                                  Tr::t("folderpick.outside_msg").arg(home));
        return;
    }
    addExtra(dir);
}

void FolderPickerDialog::addExtra(const QString& dir)
{
    if (!containsPath(m_extra, dir))
        m_extra.append(dir);
    buildRows(chosen() << dir);
}

bool FolderPickerDialog::eventFilter(QObject* watched, QEvent* event)
{
    // A list would take them for the beginning of a name to look for.
    if (watched == m_list && event->type() == QEvent::KeyPress &&
        handleDialogBackKey(this, static_cast<QKeyEvent*>(event)))
        return true;
    return FramelessDialog::eventFilter(watched, event);
}
