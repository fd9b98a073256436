// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtTest 1.15
import "qrc:/Resources/Widgets"

Item {
    id: root

    width: 600
    height: 700

    ListModel {
        id: instruments

        ListElement {
            DisplayLabel: "Short"
            RessourceName: "simulated://1"
            Interface: 2
        }
        ListElement {
            DisplayLabel: "An instrument with a name that is far longer than the row in which it has to find its place beside the button"
            RessourceName: "simulated://2"
            Interface: 2
        }
    }

    Component {
        id: listComponent

        ListView {
            width: 400
            height: 100
            model: instruments
            delegate: InstrumentRow {
                width: 400
            }
        }
    }

    Component {
        id: informationComponent

        InstrumentInformation {
            anchors.fill: parent
        }
    }

    Component {
        id: serialComponent

        SerialSettings {
            anchors.fill: parent
        }
    }

    SignalSpy {
        id: writes

        target: ConnectionPageViewModel
        signalName: "valueChanged"
    }

    TestCase {
        name: "InstrumentSelection"
        when: windowShown

        function test_aLongNameLeavesTheButtonItsPlace() {
            const list = createTemporaryObject(listComponent, root);
            waitForRendering(list);
            const shortButton = findChild(list, "connectButton0");
            const longButton = findChild(list, "connectButton1");
            compare(longButton.width, shortButton.width);
            compare(longButton.mapToItem(list, 0, 0).x, shortButton.mapToItem(list, 0, 0).x);
            verify(longButton.mapToItem(list, longButton.width, 0).x <= 400);
            const longLabel = findChild(findChild(list, "instrumentRow1"), "instrumentLabel");
            verify(longLabel.truncated);
            const shortLabel = findChild(findChild(list, "instrumentRow0"), "instrumentLabel");
            verify(!shortLabel.truncated);
        }

        function writesOf(key) {
            let count = 0;
            for (let i = 0; i < writes.count; ++i) {
                if (writes.signalArguments[i][0] === key)
                    ++count;
            }
            return count;
        }

        function test_aNewListIsNoChoice() {
            ConnectionPageViewModel.InstrumentNames = ["None", "A - 1"];
            ConnectionPageViewModel.SelectedDefaultInstrumentIndex = 1;
            const information = createTemporaryObject(informationComponent, root);
            const row = findChild(information, "defaultInstrumentBox");
            compare(row.currentIndex, 1);
            writes.clear();
            ConnectionPageViewModel.InstrumentNames = ["None", "A - 1", "B - 2"];
            compare(row.count, 3);
            compare(row.currentIndex, 1);
            compare(row.currentText, "A - 1");
            compare(ConnectionPageViewModel.SelectedDefaultInstrumentIndex, 1);
            compare(writesOf("SelectedDefaultInstrumentIndex"), 0);

            // The user's choice is written, and later values of the view model are still shown.
            const box = findChild(row, "defaultInstrumentBoxBox");
            box.forceActiveFocus();
            keyClick(Qt.Key_Down);
            compare(ConnectionPageViewModel.SelectedDefaultInstrumentIndex, 2);
            compare(writesOf("SelectedDefaultInstrumentIndex"), 1);
            ConnectionPageViewModel.SelectedDefaultInstrumentIndex = 0;
            compare(row.currentIndex, 0);
            compare(row.currentText, "None");
        }

        function test_serialSettings_data() {
            return [
                {
                    tag: "ports",
                    ports: ["ttyS0", "ttyUSB0"],
                    port: 1
                },
                {
                    tag: "no ports",
                    ports: [],
                    port: 0
                }
            ];
        }

        // To look at the choices is no choice.
        function test_serialSettings(data) {
            ConnectionPageViewModel.SerialPortNames = data.ports;
            ConnectionPageViewModel.SelectedSerialPortNameIndex = data.port;
            ConnectionPageViewModel.BaudrateNames = ["4800", "9600", "14400"];
            ConnectionPageViewModel.SelectedBaudrateIndex = 1;
            writes.clear();
            const settings = createTemporaryObject(serialComponent, root);
            const rate = findChild(settings, "baudRateBox");
            waitForRendering(settings);
            compare(writesOf("SelectedSerialPortNameIndex"), 0);
            compare(writesOf("SelectedBaudrateIndex"), 0);
            compare(ConnectionPageViewModel.SelectedSerialPortNameIndex, data.port);
            compare(rate.currentText, "9600");
            compare(findChild(settings, "serialPortBox").currentText, data.ports.length > 0 ? "ttyUSB0" : "");

            findChild(rate, "baudRateBoxBox").forceActiveFocus();
            keyClick(Qt.Key_Down);
            compare(ConnectionPageViewModel.SelectedBaudrateIndex, 2);
            compare(writesOf("SelectedBaudrateIndex"), 1);
            ConnectionPageViewModel.SelectedBaudrateIndex = 0;
            compare(rate.currentText, "4800");
        }
    }
}
