// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPoint>
#include <QPointer>
#include <QWidget>

class CardShadow;
class QFrame;
class QPropertyAnimation;
class QTimer;

/// What the windows without a frame have in common: they are summoned and dismissed by one toggle,
/// appear at once, go by a short fade as soon as the user turns to another program, can be dragged
/// by any part that doesn't take the mouse, and cast a shadow into a transparent margin.
/// A subclass says where the window goes and what state every show begins in. GUI thread only.
class FramelessWindow : public QWidget
{
    Q_OBJECT

public:
    static constexpr int SHADOW_MARGIN = 32; ///< transparent margin on all four sides, in pixels
    static constexpr int ShowGuardMs = 1500; ///< how long a show ignores the loss of focus

    /// Shows the window if it is hidden or fading out, else dismisses it. A press during the fade
    /// is lost: the fade runs to its end.
    void toggleVisibility();

    /// The one way to dismiss the window; nothing if it is on its way out already.
    void fadeOutAndHide();

public slots:
    void hideForOtherWindow();

signals:
    /// At the end of each show, when the window has its place and has asked for the keyboard.
    void becameVisible();

protected:
    /// The window stays hidden.
    explicit FramelessWindow(QWidget* parent);

    /// True if a toggle now would show the window and not dismiss it.
    virtual bool isToggledToShow() const;

    /// The steps of a show that are a window's own, in this order: what it clears while nobody sees
    /// it yet; its place; what it does once it is in the foreground.
    virtual void prepareShow() {}
    virtual void placeOnScreen() = 0;
    virtual void finishShow() {}

    /// Before a fade that wasn't under way already.
    virtual void prepareFade() {}

    /// True if the release of that button ends a drag.
    virtual bool isDragEndedBy(Qt::MouseButton button) const;

    /// The window has just followed the pointer.
    virtual void dragged() {}

    /// Lays the layer that casts the window's shadow below all else in the window, with corners of
    /// `radiusPx`. It is a sibling of the card and not the card itself, so that a repaint in the
    /// card stays as small as it is.
    void buildShadowLayer(const QString& objectName, int radiusPx);

    /// Gives the layer the place of the card: by default all but the margin. Called at each resize.
    virtual void syncShadowLayers();

    /// Gives the shadow the strength that fits the present mode, light or dark.
    void tintShadow();

    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

    bool m_isClosing = false; ///< a fade-out has begun and no show has followed
    bool m_isShowing = false; ///< the show guard runs
    bool m_dragging = false;
    QPoint m_dragPosition; ///< of the pointer, relative to the corner of the window
    QTimer* m_showGuardTimer = nullptr;
    QPointer<QPropertyAnimation> m_fadeAnim;
    QFrame* m_shadowLayer = nullptr;
    CardShadow* m_dropShadow = nullptr; ///< effect on `m_shadowLayer`

private:
    bool isLeftForAnotherProgram(const QEvent* event) const;
    void takeForeground();
    void endFade();
};
