// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../../Controls"

// The comments that go with a record.
ParametersBox {
    id: box

    readonly property QtObject manager: ActiveOperation.RecordingManager

    objectName: "recordBox"
    title: qsTr("Record")
    visible: manager.IsRecording

    KXCLabel {
        text: qsTr("Overall comment")
        Accessible.ignored: true
    }

    CommentArea {
        id: bodyComment

        objectName: "bodyCommentArea"
        Accessible.name: qsTr("Overall comment")
        tabTarget: measComment
        text: box.manager.BodyComment
        onCommented: box.manager.BodyComment = text
    }

    KXCLabel {
        text: qsTr("Per-measurement comment")
        Layout.fillWidth: true
        Accessible.ignored: true
    }

    CommentArea {
        id: measComment

        objectName: "measCommentArea"
        Accessible.name: qsTr("Per-measurement comment")
        tabTarget: bodyComment
        text: box.manager.MeasComment
        onCommented: box.manager.MeasComment = text
    }
}
