#pragma once

#include <QList>
#include <QStringList>

class QQuickItem;
class QQuickWindow;

// What a person sees in a window, and presses there. GUI thread.

/// Visible items of that object name, or all of them when it is null, from top to bottom.
QList<QQuickItem*> shownItems(const QQuickWindow* window, const QString& objectName = QString());

/// The visible item of that object name, when there is exactly one; else null.
QQuickItem* shownItem(const QQuickWindow* window, const QString& objectName);

/// Whether a visible item has that text.
bool showsText(const QQuickWindow* window, const QString& text);

/// Presses the middle of an item as a mouse does; false when it is null.
bool press(QQuickItem* item);
