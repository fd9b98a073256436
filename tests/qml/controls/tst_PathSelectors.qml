// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtTest 1.15
import "qrc:/Resources/Controls"

Item {
    id: root

    readonly property string prefix: Utils.isUnix() ? "file://" : "file:///"

    width: 400
    height: 300

    Component {
        id: fileComponent

        FileSelector {
            property var nameAtPath: null

            objectName: "limits"
            label: "Limits"
            onFilePathChanged: nameAtPath = fileName
        }
    }

    Component {
        id: folderComponent

        FolderSelector {
            objectName: "storage"
        }
    }

    TestCase {
        function paths() {
            return [
                {tag: "plain", url: "/home/user/limits.xml", path: "/home/user/limits.xml", name: "limits.xml"},
                {tag: "blank", url: "/home/user/my limits.xml", path: "/home/user/my limits.xml", name: "my limits.xml"},
                {tag: "number sign", url: "/tmp/a%23b.xml", path: "/tmp/a#b.xml", name: "a#b.xml"},
                {tag: "per cent", url: "/tmp/50%25.xml", path: "/tmp/50%.xml", name: "50%.xml"},
                {tag: "umlaut", url: "/tmp/\u00FC.xml", path: "/tmp/\u00FC.xml", name: "\u00FC.xml"},
                {tag: "no folder", url: "/limits", path: "/limits", name: "limits"}
            ];
        }

        name: "PathSelectors"
        when: windowShown

        function test_defaults() {
            const selector = createTemporaryObject(fileComponent, root);
            compare(selector.value, "");
            compare(selector.filePath, "");
            compare(selector.fileName, "");
            compare(selector.placeHolderText, "");
            compare(selector.label, "Limits");
            const field = findChild(selector, "limitsText");
            verify(field.readOnly);
            compare(field.Accessible.name, "Limits");
            const button = findChild(selector, "limitsButton");
            compare(button.width, 30);
            compare(button.Accessible.name, "Select a limits file");
        }

        function test_chosenFile_data() {
            return paths();
        }

        function test_chosenFile(data) {
            const selector = createTemporaryObject(fileComponent, root);
            selector.acceptUrl(Qt.resolvedUrl(root.prefix + data.url));
            compare(selector.filePath, data.path);
            compare(selector.fileName, data.name);
            // Who waits for the path finds the name already there.
            compare(selector.nameAtPath, data.name);
        }

        function test_chosenFolder_data() {
            return paths();
        }

        function test_chosenFolder(data) {
            const selector = createTemporaryObject(folderComponent, root);
            compare(selector.folderPath, "");
            selector.acceptUrl(Qt.resolvedUrl(root.prefix + data.url));
            compare(selector.folderPath, data.path);
        }

        function test_ownerShowsWhatItLikes() {
            const selector = createTemporaryObject(fileComponent, root, {value: "mine.xml", placeHolderText: "none"});
            const field = findChild(selector, "limitsText");
            compare(field.text, "mine.xml");
            compare(field.placeholderText, "none");
        }
    }
}
