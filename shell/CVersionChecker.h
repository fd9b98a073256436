// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

class QDomElement;

/// Asks a web server for the list of the newest versions and tells when it names a later one of this product.
/// A failure of any kind is logged and has no other effect. Main thread only.
///
/// The list is XML: in "Root", a "Header" with the "Version" of the format, 1.0, and "Products" with an
/// element for each product, whose "Software" is its newest version as a dotted number.
class CVersionChecker : public QObject
{
    Q_OBJECT

public:
    /// `productName` names the element of this product in the list.
    CVersionChecker(const QString& productName, const QString& currentVersion, const QString& url,
                    QObject* parent = nullptr);

    /// Fetches the list and evaluates it. Blocks for as long as the network takes, without a time limit.
    void Run();
    /// What OnNewVersionResponse() evaluates.
    void SetResponse(const QByteArray& response) { m_response = response; }

public slots:
    /// Evaluates the list that was fetched.
    void OnNewVersionResponse();

signals:
    /// The list names a later version, here without its trailing zeros.
    void NewVersionAvailable(QString newVersion);

private:
    void Evaluate();
    static void ReadHeader(const QDomElement& header);
    void ReadProducts(const QDomElement& products);

    QString m_currentVersion;
    QString m_url;
    QString m_productName;
    QByteArray m_response;
};
