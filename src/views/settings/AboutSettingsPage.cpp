// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AboutSettingsPage.h"

#include "HotkeyManager.h"
#include "Localization.h"
#include "RowPainting.h"
#include "SettingsCard.h"
#include "SettingsPill.h"
#include "Theme.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>

namespace
{

constexpr QLatin1String kVersion("0.91");
const QString kNameSize = QStringLiteral("22px");
constexpr QMargins kHeaderMargins(24, 0, 12, 0);
// More than every combination takes that can be recorded; what stands in the settings may be
// longer.
constexpr int kMaxComboWidth = 240;

QLabel* makeLabel(const QString& text, const QString& style)
{
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setStyleSheet(style);
    return label;
}

QString hotkeyText()
{
    const QFont font = RowPainting::rowFont(FontTokens::SizeMdPx);
    const QString combo = RowPainting::elidedLine(
        QFontMetrics(font), HotkeyManager::mainWindowSlot.combo, kMaxComboWidth);
    return Tr::t("about.hotkey_label").arg(combo);
}

} // namespace

AboutSettingsPage::AboutSettingsPage(LauncherModel* model, QWidget* parent) : QWidget(parent)
{
    Q_UNUSED(model);
    QVBoxLayout* rows = makeSettingsColumn(this);
    rows->addLayout(buildHeader());
    rows->addWidget(makeInfoLine(Tr::t("about.tagline")));
    rows->addWidget(makeInfoLine(hotkeyText()));
    rows->addWidget(buildTourRow());
    rows->addWidget(buildStoreRow());
    rows->addWidget(buildFeedbackRow());
    rows->addStretch();
}

const QString& AboutSettingsPage::feedbackEmail()
{
    static const QString address = QStringLiteral(ORLIMO_FEEDBACK_EMAIL);
    return address;
}

QLayout* AboutSettingsPage::buildHeader()
{
    const ColorTokens c = Theme::colors();
    auto* header = new QHBoxLayout;
    header->setContentsMargins(kHeaderMargins);
    header->setSpacing(Theme::Sp_Md);
    header->addWidget(
        makeLabel(QStringLiteral("Orlimo"),
                  Theme::textOnCardStyle(c.onSurface, kNameSize, Theme::Weight::Bold)),
        0, Qt::AlignBottom);
    const QString version =
        QLatin1Char('v') + kVersion + QStringLiteral("  ·  ") + Tr::t("about.prerelease");
    header->addWidget(
        makeLabel(version, Theme::textOnCardStyle(c.onSurfaceVariant, FontTokens::SizeSm)), 0,
        Qt::AlignBottom);
    header->addStretch();
    return header;
}

QLabel* AboutSettingsPage::makeInfoLine(const QString& text)
{
    QLabel* line = makeLabel(
        text,
        QStringLiteral("color: %1; font-size: %2; background: transparent; border: none; "
                       "padding-left: %3px;")
            .arg(Theme::colors().onSurfaceVariant, FontTokens::SizeMd, QString::number(RowIndent)));
    line->setWordWrap(true);
    return line;
}

QPushButton* AboutSettingsPage::makeSecondaryBtn(const QString& text, const QString& objectName)
{
    return SettingsPill::make(text, objectName);
}

QWidget* AboutSettingsPage::makeButtonRow(const QString& title, QPushButton* button)
{
    return new SettingsCard(title, button);
}

QWidget* AboutSettingsPage::buildTourRow()
{
    m_tourBtn = new QPushButton(Tr::t("about.btn_start_tour"));
    SettingsPill::shape(m_tourBtn, QStringLiteral("startTourBtn"));
    m_tourBtn->setStyleSheet(Theme::primaryBtnStyle(Theme::colors()));
    connect(m_tourBtn, &QPushButton::clicked, this, &AboutSettingsPage::startTourRequested);
    return makeButtonRow(Tr::t("about.tour_title"), m_tourBtn);
}

QWidget* AboutSettingsPage::buildStoreRow()
{
    m_storeBtn = makeSecondaryBtn(Tr::t("about.btn_store"), QStringLiteral("aboutStoreBtn"));
    connect(m_storeBtn, &QPushButton::clicked, this,
            [] { QDesktopServices::openUrl(QUrl(QStringLiteral(ORLIMO_STORE_URL))); });
    return makeButtonRow(Tr::t("about.store_title"), m_storeBtn);
}

QWidget* AboutSettingsPage::buildFeedbackRow()
{
    m_feedbackBtn = makeSecondaryBtn(feedbackEmail(), QStringLiteral("aboutMailBtn"));
    connect(m_feedbackBtn, &QPushButton::clicked, this, &AboutSettingsPage::copyFeedbackEmail);
    return makeButtonRow(Tr::t("about.feedback_title"), m_feedbackBtn);
}

void AboutSettingsPage::copyFeedbackEmail()
{
    QGuiApplication::clipboard()->setText(feedbackEmail());
    m_feedbackBtn->setText(Tr::t("about.copied"));
    QTimer::singleShot(CopiedMs, m_feedbackBtn,
                       [this] { m_feedbackBtn->setText(feedbackEmail()); });
}
