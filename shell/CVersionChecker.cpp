// SPDX-License-Identifier: GPL-3.0-or-later
#include "CVersionChecker.h"

#include "CException.h"

#include <QDebug>
#include <QDomDocument>
#include <QVersionNumber>
#include <QXmlStreamReader>

#include <curl/curl.h>

namespace {

using Exception = VRQ::CException<CVersionChecker>;

const char kByteOrderMark[] = "\xEF\xBB\xBF";
// The list has four. A document takes its elements down one within the other, so that as many as a hostile
// server can send would exhaust the stack.
constexpr int kMaxDepth = 100;
constexpr long kMaxRedirects = 30;

size_t appendToArray(char* data, size_t size, size_t count, void* array)
{
    const size_t numBytes = size * count;
    static_cast<QByteArray*>(array)->append(data, static_cast<int>(numBytes));
    return numBytes;
}

struct ParseError
{
    int line = 0;
    int column = 0;
};

bool isTooDeep(const QByteArray& text, ParseError& error)
{
    QXmlStreamReader xml(text);
    int depth = 0;
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::StartElement)
            ++depth;
        else if (token == QXmlStreamReader::EndElement)
            --depth;
        if (depth > kMaxDepth) {
            error = {static_cast<int>(xml.lineNumber()), static_cast<int>(xml.columnNumber())};
            return true;
        }
    }
    return false;
}

bool parse(const QByteArray& text, QDomDocument& document, ParseError& error)
{
    return !isTooDeep(text, error) && document.setContent(text, nullptr, &error.line, &error.column);
}

} // namespace

CVersionChecker::CVersionChecker(const QString& productName, const QString& currentVersion,
                                 const QString& url, QObject* parent)
    : QObject(parent), m_currentVersion(currentVersion), m_url(url), m_productName(productName)
{
}

void CVersionChecker::Run()
{
    CURL* const curl = curl_easy_init();
    if (!curl) {
        qWarning().noquote() << "VersionChecker: Failed to initialize CURL";
        return;
    }

    QByteArray response;
    curl_easy_setopt(curl, CURLOPT_URL, m_url.toUtf8().constData());
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, appendToArray);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &response);
    curl_easy_setopt(curl, CURLOPT_FOLLOWLOCATION, 1L);
    // Some versions of libcurl follow a server that sends them round in a circle for ever.
    curl_easy_setopt(curl, CURLOPT_MAXREDIRS, kMaxRedirects);
    if (m_url.startsWith(QLatin1String("https"), Qt::CaseInsensitive)) {
        curl_easy_setopt(curl, CURLOPT_SSL_VERIFYPEER, 1L);
        curl_easy_setopt(curl, CURLOPT_SSL_VERIFYHOST, 2L);
    }
    const CURLcode result = curl_easy_perform(curl);
    if (result != CURLE_OK) {
        qWarning().noquote() << "VersionChecker: CURL error:" << curl_easy_strerror(result);
        curl_easy_cleanup(curl);
        return;
    }
    curl_easy_cleanup(curl);
    SetResponse(response);
    OnNewVersionResponse();
}

void CVersionChecker::OnNewVersionResponse()
{
    try {
        Evaluate();
    } catch (const std::exception& exception) {
        qWarning().noquote() << "VersionChecker exception:" << exception.what();
    } catch (...) {
        qWarning().noquote() << "VersionChecker: Unknown exception while parsing XML file.";
    }
}

void CVersionChecker::Evaluate()
{
    if (m_response.isEmpty()) {
        qWarning().noquote() << "VersionChecker: Empty response from version URL.";
        return;
    }
    if (m_response.startsWith(kByteOrderMark))
        m_response.remove(0, static_cast<int>(qstrlen(kByteOrderMark)));

    QDomDocument document;
    ParseError error;
    if (!parse(m_response, document, error)) {
        qWarning().noquote() << QStringLiteral("VersionChecker: Cannot parse XML.\nLine: %1, Column: %2")
                                    .arg(error.line)
                                    .arg(error.column);
        return;
    }
    m_response.clear();

    const QDomElement root = document.documentElement();
    if (root.isNull()) {
        qWarning().noquote() << "VersionChecker: XML document has no root element.";
        return;
    }
    if (root.tagName() != QLatin1String("Root")) {
        qWarning().noquote() << "VersionChecker: Unexpected root element:" << root.tagName()
                             << "Expected: Root";
        return;
    }
    const QDomElement header = root.firstChildElement(QStringLiteral("Header"));
    if (header.isNull())
        throw Exception("Missing Header element", "fileDownloaded");
    ReadHeader(header);
    const QDomElement products = root.firstChildElement(QStringLiteral("Products"));
    if (products.isNull())
        throw Exception("Missing Products element", "fileDownloaded");
    ReadProducts(products);
}

void CVersionChecker::ReadHeader(const QDomElement& header)
{
    const QDomElement version = header.firstChildElement(QStringLiteral("Version"));
    if (version.isNull())
        throw Exception("Header missing <Version> element", "ReadHeader");
    const QString text = version.text().trimmed();
    if (text != QLatin1String("1.0"))
        throw Exception(QStringLiteral("XML version mismatch: expected 1.0, got %1").arg(text).toStdString(),
                        "ReadHeader");
}

void CVersionChecker::ReadProducts(const QDomElement& products)
{
    const QDomElement product = products.firstChildElement(m_productName);
    if (product.isNull()) {
        qInfo().noquote() << "VersionChecker: Product not found in XML:" << m_productName;
        return;
    }
    const QDomElement software = product.firstChildElement(QStringLiteral("Software"));
    if (software.isNull())
        throw Exception("Missing <Software> element in product section", "ReadProducts");

    const QString onlineText = software.text().trimmed();
    const QVersionNumber online = QVersionNumber::fromString(onlineText);
    const QVersionNumber current = QVersionNumber::fromString(m_currentVersion);
    qInfo().noquote() << "Current software version:" << m_currentVersion
                      << "Online software version:" << onlineText;
    if (online.isNull()) {
        qWarning().noquote() << "VersionChecker: Invalid online version format:" << onlineText;
        return;
    }
    if (QVersionNumber::compare(online, current) > 0)
        emit NewVersionAvailable(online.normalized().toString());
}
