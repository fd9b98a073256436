// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../Controls"

// Name, maker and licence of the program.
KXCSettingsSection {
    title: qsTr("About Kestrix")

    KXCLabel {
        objectName: "aboutText"
        Layout.fillWidth: true
        text: OrganizationName + " " + AppName + " v" + Version
    }

    KXCLinkLabel {
        objectName: "contactLink"
        Layout.fillWidth: true
        textBefore: qsTr("Contact: ")
        linkText: OrganizationEmail
        url: "mailto:" + OrganizationEmail
    }

    KXCLinkLabel {
        objectName: "websiteLink"
        Layout.fillWidth: true
        textBefore: qsTr("Web site: ")
        linkText: OrganizationWebsite
        url: OrganizationWebsite
    }

    Image {
        objectName: "aboutLogo"
        Layout.preferredWidth: 140
        Layout.preferredHeight: 140 * implicitHeight / Math.max(1, implicitWidth)
        source: OrganizationLogo
        // Drawn at this width, not scaled to it.
        sourceSize.width: 140
        fillMode: Image.PreserveAspectFit
        Accessible.role: Accessible.Graphic
        Accessible.name: OrganizationName
    }

    KXCLabel {
        objectName: "legalText"
        Layout.fillWidth: true
        text: qsTr("This program is free software: you can redistribute it and modify it under the terms of the GNU General Public License, version 3 or any later version, as published by the Free Software Foundation. It is distributed in the hope that it will be useful, but without any warranty; without even the implied warranty of merchantability or fitness for a particular purpose. See the GNU General Public License for details.")
    }

    KXCLabel {
        Layout.fillWidth: true
        text: qsTr("It contains or uses Qt, Eigen, libcurl and the Oxygen fonts, each under its own licence.")
    }
}
