// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// Makes each 3-D scene of its window once, and keeps it out of sight between two showings. A scene that leaves its
// window, or is destroyed, leaves the memory of its picture behind (2 MB, Qt 5.15); one that only moves within the
// window keeps that memory for its next picture.
//
// A scene has the functions open(), which makes it what a new one would be, and close(), after which it uses nothing of
// the page that showed it.
Item {
    id: keeper

    property var scenes: ({})

    // Shows the scene of this source in `place`, whose size it takes. Whoever showed it before shows nothing from then
    // on. Null, and a warning, if there is no such scene.
    function borrow(source, place) {
        const scene = scenes[source] || make(source);
        if (!scene)
            return null;
        if (scene.parent !== keeper)
            scene.close();
        scene.parent = place;
        scene.width = Qt.binding(() => place.width);
        scene.height = Qt.binding(() => place.height);
        scene.open();
        return scene;
    }

    // Does nothing if somebody else shows the scene by now.
    function giveBack(source, place) {
        const scene = scenes[source];
        if (!scene || scene.parent !== place)
            return;
        scene.close();
        // In place of the bindings: a change of size would cost a new picture.
        scene.width = place.width;
        scene.height = place.height;
        scene.parent = keeper;
    }

    function make(source) {
        const component = Qt.createComponent(source);
        if (component.status !== Component.Ready) {
            console.warn(component.errorString());
            return null;
        }
        scenes[source] = component.createObject(keeper);
        return scenes[source];
    }

    objectName: "sceneKeeper"
    visible: false
}
