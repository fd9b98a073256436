// SPDX-License-Identifier: GPL-3.0-or-later
.pragma library

// Scrolls a flickable so far that an item which the keyboard has reached is in view. `content` is what it scrolls,
// `viewHeight` how much of that it shows.
function bringIntoView(item, content, flickable, viewHeight) {
    for (let ancestor = item; ancestor !== content; ancestor = ancestor.parent) {
        if (ancestor === null)
            return;
    }
    // What moves away from under the mouse would miss its release.
    if (item.focusReason === Qt.MouseFocusReason)
        return;
    const margin = 10;
    const top = item.mapToItem(content, 0, 0).y - margin;
    const bottom = item.mapToItem(content, 0, item.height).y + margin;
    if (top < flickable.contentY)
        flickable.contentY = Math.max(0, top);
    else if (bottom > flickable.contentY + viewHeight)
        flickable.contentY = Math.min(bottom, content.height) - viewHeight;
}
