#include "support/ShownItems.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <algorithm>

namespace {

// By the items of the picture: delegates are no children of objects.
void collectBelow(QQuickItem* item, const QString& objectName, QList<QQuickItem*>& found)
{
    if (!item->isVisible())
        return;
    if (objectName.isNull() || item->objectName() == objectName)
        found << item;
    for (QQuickItem* child : item->childItems())
        collectBelow(child, objectName, found);
}

} // namespace

QList<QQuickItem*> shownItems(const QQuickWindow* window, const QString& objectName)
{
    QList<QQuickItem*> found;
    collectBelow(window->contentItem(), objectName, found);
    // Delegates are made in the order in which their units came.
    std::stable_sort(found.begin(), found.end(), [](QQuickItem* left, QQuickItem* right) {
        return left->mapToScene(QPointF()).y() < right->mapToScene(QPointF()).y();
    });
    return found;
}

QQuickItem* shownItem(const QQuickWindow* window, const QString& objectName)
{
    const QList<QQuickItem*> found = shownItems(window, objectName);
    return found.size() == 1 ? found.first() : nullptr;
}

bool showsText(const QQuickWindow* window, const QString& text)
{
    const QList<QQuickItem*> items = shownItems(window);
    return std::any_of(items.begin(), items.end(), [&text](const QQuickItem* item) {
        return item->property("text").toString() == text;
    });
}

bool press(QQuickItem* item)
{
    if (item == nullptr)
        return false;
    const QPointF centre = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
    QTest::mouseClick(item->window(), Qt::LeftButton, Qt::NoModifier, centre.toPoint());
    return true;
}
