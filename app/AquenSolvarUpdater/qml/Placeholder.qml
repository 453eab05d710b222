// SPDX-License-Identifier: LicenseRef-Proprietary
import QtQuick 2.9

// Shows an item that is declared elsewhere: adopts it, and releases it when another one is set.
Item {
    id: root

    property Item contentItem: Rectangle {
        color: "grey"
    }
    property Item _previousContentItem: null

    function _takeContentItem() {
        var previous = _previousContentItem;
        if (previous && previous !== contentItem && previous.parent === root) {
            previous.anchors.fill = undefined;
            previous.parent = null;
        }
        _previousContentItem = contentItem;
        if (contentItem) {
            contentItem.parent = root;
            contentItem.anchors.fill = root;
        }
    }

    onContentItemChanged: _takeContentItem()
    Component.onCompleted: _takeContentItem()
}
