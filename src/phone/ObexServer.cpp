// SPDX-License-Identifier: GPL-3.0-or-later
#include "phone/ObexServer.h"

#include "core/Error.h"
#include "phone/ATCServer.h"
#include "phone/ObexListing.h"
#include "phone/ObexSession.h"

#include <QRegularExpression>

namespace tsr::phone {

namespace {

const QString kSource = QStringLiteral("ObexServer");

// "\telecom\pb\3.vcf" as the folders from the root and the last name: {telecom, pb} and 3.vcf.
std::pair<QStringList, QString> splitPath(const QString& fullPath) {
    QStringList parts = fullPath.split(QRegularExpression(QStringLiteral("[\\\\/]")), Qt::SkipEmptyParts);
    const QString last = parts.isEmpty() ? QString() : parts.takeLast();
    return {parts, last};
}

// "+CPROT: (0,2)" or "+CPROT: 0-2": whether protocol 0 is among those listed.
bool listsProtocolZero(const QList<QByteArray>& lines) {
    for (const QByteArray& line : lines) {
        if (!line.startsWith("+CPROT:"))
            continue;
        QByteArray list = line.mid(7);
        list.replace('(', ',').replace(')', ',');
        for (const QByteArray& piece : list.split(',')) {
            const QList<QByteArray> range = piece.trimmed().split('-');
            bool okFrom = false;
            bool okTo = false;
            const int from = range.value(0).trimmed().toInt(&okFrom);
            const int to = range.size() > 1 ? range.value(1).trimmed().toInt(&okTo) : from;
            if (okFrom && (range.size() == 1 || okTo) && from <= 0 && to >= 0)
                return true;
        }
    }
    return false;
}

} // namespace

ObexServer::ObexServer(LinkSource link) : m_link(std::move(link)) {}

ObexServer::~ObexServer() {
    endSession(true);
}

std::optional<bool> ObexServer::offeredBy(ATCServer& link) {
    std::optional<bool> offered;
    bool lineUnknown = false;
    try {
        QSerialPort& port = link.lendDevice([] {});
        try {
            ObexSession probe(port, link.timeOut());
            offered = listsProtocolZero(probe.atCommand(QByteArrayLiteral("AT+CPROT=?")));
        } catch (const core::TsrError& e) {
            // An error result is an answer, and leaves the line as it was; silence or a break is neither.
            lineUnknown = e.number() == atc::NotResponding || e.number() == atc::ServerGone;
            if (!lineUnknown)
                offered = false;
        }
        link.returnDevice(lineUnknown);
    } catch (const core::TsrError&) {
        return std::nullopt;
    }
    return offered;
}

void ObexServer::openSession(const std::shared_ptr<ATCServer>& link) {
    QSerialPort* port = nullptr;
    try {
        port = &link->lendDevice([this] { endSession(true); });
    } catch (const core::TsrError& e) {
        // A missing device is a broken link here: "not found" means a missing file on this road.
        core::raise(atc::ServerGone, kSource, e.description());
    }
    m_lender = link;
    m_session = std::make_unique<ObexSession>(*port, link->timeOut());
    ++m_sessions;
    m_session->open();
}

void ObexServer::endSession(bool polite) {
    std::unique_ptr<ObexSession> session = std::move(m_session);
    const std::shared_ptr<ATCServer> link = m_lender.lock();
    m_lender.reset();
    if (!session)
        return;
    bool clean = false;
    if (polite && session->sound()) {
        try {
            session->disconnect();
            clean = true;
        } catch (const core::TsrError&) {
            clean = false;
        }
    }
    m_pastBytes += session->lineBytes();
    m_pastRequests += session->requests();
    session.reset();
    if (link)
        link->returnDevice(!clean);
}

qint64 ObexServer::lineBytes() const {
    return m_pastBytes + (m_session ? m_session->lineBytes() : 0);
}

int ObexServer::requestCount() const {
    return m_pastRequests + (m_session ? m_session->requests() : 0);
}

template <class Op> auto ObexServer::inFolder(const QStringList& folder, Op&& op) {
    const std::shared_ptr<ATCServer> link = m_link ? m_link() : nullptr;
    if (!link)
        core::raise(atc::ServerGone, kSource, QStringLiteral("No link to the mobile"));
    if (m_session && m_lender.lock() != link)
        endSession(true);
    try {
        if (!m_session)
            openSession(link);
        m_session->walkTo(folder);
        return op(*m_session);
    } catch (const core::TsrError&) {
        // Whatever failed, the phone is to speak AT again before the error travels on.
        endSession(true);
        throw;
    }
}

// The bindings are copied into plain names: a lambda cannot take a structured binding everywhere.
void ObexServer::DeleteFile(const QString& fullPath) {
    const auto split = splitPath(fullPath);
    const auto& folder = split.first;
    const auto& name = split.second;
    inFolder(folder, [&](ObexSession& s) {
        s.put(name, nullptr);
        return 0;
    });
}

QList<QStringList> ObexServer::ListFiles(const QString& pathWithMask, int) {
    const auto split = splitPath(pathWithMask);
    const auto& folder = split.first;
    const auto& mask = split.second;
    return inFolder(folder, [&](ObexSession& s) {
        const QByteArray document = s.get(QString(), QByteArrayLiteral("x-obex/folder-listing"));
        const auto rows = obexListedFiles(document, mask);
        if (!rows)
            core::raise(atc::GeneralFailure, kSource,
                        QStringLiteral("The mobile's listing of %1 cannot be read").arg(folder.join(u'\\')));
        return *rows;
    });
}

QByteArray ObexServer::ReadFile(const QString& fullPath) {
    const auto split = splitPath(fullPath);
    const auto& folder = split.first;
    const auto& name = split.second;
    return inFolder(folder, [&](ObexSession& s) { return s.get(name, QByteArray()); });
}

void ObexServer::WriteFile(const QString& fullPath, const QByteArray& stream, int) {
    const auto split = splitPath(fullPath);
    const auto& folder = split.first;
    const auto& name = split.second;
    inFolder(folder, [&](ObexSession& s) {
        s.put(name, &stream);
        return 0;
    });
}

} // namespace tsr::phone
