// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Window 2.15
import ".."
import "../../Utils/Style.js" as Style

// Shows a 3-D scene where OpenGL can draw one, and says so where it cannot: the scenes end the program on a context
// that they do not understand. What draws the window is known once it is on screen; until then nothing is shown.
// A window with a SceneKeeper as its property `sceneKeeper` lends the scene, which outlives this item; in any other
// window it is made here.
Item {
    id: sceneLoader

    property url source
    readonly property Item scene: borrowedScene || loader.item

    property Item keeper: null
    property Item borrowedScene: null
    property bool isComplete: false
    readonly property bool isDue: isComplete && isUsable

    readonly property bool isGraphicsKnown: GraphicsInfo.api !== GraphicsInfo.Unknown
    readonly property bool isEmbedded: GraphicsInfo.renderableType === GraphicsInfo.SurfaceFormatOpenGLES
    readonly property bool isDesktop21: GraphicsInfo.majorVersion * 10 + GraphicsInfo.minorVersion >= 21
                                        && GraphicsInfo.profile !== GraphicsInfo.OpenGLCoreProfile
    readonly property bool isUsable: GraphicsInfo.api === GraphicsInfo.OpenGL && (isEmbedded || isDesktop21)

    // On a scaled display a scene rounds the pixels of its picture and cuts off those that it draws: the largest length
    // for which both are the same leaves no black edge. At a scale next to 1 there can be none for hundreds of pixels;
    // then the scene is larger than its place, and the edges are cut off.
    function drawnLength(available) {
        const most = Math.max(Math.floor(available), 0);
        for (let length = most; length > most - 16; --length) {
            if ((length * Screen.devicePixelRatio) % 1 < 0.5)
                return Math.max(length, 0);
        }
        return most + 2;
    }

    function showScene() {
        const window = sceneLoader.ApplicationWindow.window;
        keeper = window && window.sceneKeeper ? window.sceneKeeper : null;
        if (keeper)
            borrowedScene = keeper.borrow(source, place);
        else
            loader.active = true;
    }

    onIsDueChanged: {
        if (isDue)
            showScene();
    }

    Component.onCompleted: isComplete = true
    // Before the items of a discarded page leave the window.
    Component.onDestruction: {
        if (keeper)
            keeper.giveBack(source, place);
    }

    clip: place.x < 0 || place.y < 0

    Item {
        id: place

        x: width > parent.width ? -1 : 0
        y: height > parent.height ? -1 : 0
        width: sceneLoader.drawnLength(parent.width)
        height: sceneLoader.drawnLength(parent.height)

        Loader {
            id: loader

            anchors.fill: parent
            active: false
            source: sceneLoader.source
            onLoaded: item.open()
        }
    }

    KXCLabel {
        objectName: "sceneUnavailableLabel"
        anchors.centerIn: parent
        width: Math.min(parent.width - 20, 320)
        horizontalAlignment: Text.AlignHCenter
        visible: sceneLoader.isGraphicsKnown && !sceneLoader.isUsable
        text: qsTr("The 3-D view needs OpenGL 2.1, which this display does not offer.")
        textColor: Style.TextLightColor
    }
}
