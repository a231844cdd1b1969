// SPDX-License-Identifier: GPL-3.0-or-later
// The file-transfer server of a phone that speaks OBEX on its serial line:
// the device of the AT-command server is borrowed, AT+CPROT=0 switches the
// line, a CONNECT to the folder-browsing service opens the session, SETPATH
// walks the folders the program names with "\" ("\telecom\pb\3.vcf"), GET
// lists and reads, PUT writes, a PUT without body deletes. The session stays
// open across calls and ends with a DISCONNECT when the AT road wants the line
// back. After any failure the line is back in AT mode. Failures are numbered
// errors: a missing file 0x80070002, a refused one 0x80070005, silence
// 0x80010001, a broken line 462, anything else 0x80004005.
#pragma once

#include "phone/GDX.h"

#include <QStringList>
#include <functional>
#include <memory>
#include <optional>

namespace tsr::phone {

class ATCServer;
class ObexSession;

class ObexServer : public GDXServerInterface {
public:
    // Gives the AT-command server whose device a session borrows, its port set.
    using LinkSource = std::function<std::shared_ptr<ATCServer>()>;

    explicit ObexServer(LinkSource link);
    ~ObexServer() override;
    ObexServer(const ObexServer&) = delete;
    ObexServer& operator=(const ObexServer&) = delete;

    void DeleteFile(const QString& fullPath) override;
    QList<QStringList> ListFiles(const QString& pathWithMask, int flags) override;
    QByteArray ReadFile(const QString& fullPath) override;
    void WriteFile(const QString& fullPath, const QByteArray& stream, int flags) override;

    // Whether the phone lists OBEX (protocol 0) in its answer to AT+CPROT=?; an error result
    // is a no; nothing when the phone gave no answer at all (no device, silence, a broken line).
    static std::optional<bool> offeredBy(ATCServer& link);
    // Sessions opened since the server was made: a plain count for tests and diagnostics.
    int sessionCount() const { return m_sessions; }
    // Bytes that crossed the line for the file calls, both ways, and the requests they took.
    qint64 lineBytes() const;
    int requestCount() const;

private:
    // Runs `op` in a session standing in `folder`; a failure ends the session and passes on.
    template <class Op> auto inFolder(const QStringList& folder, Op&& op);
    void openSession(const std::shared_ptr<ATCServer>& link);
    // Ends the session; `polite` says goodbye to the phone first when the session is sound.
    void endSession(bool polite);

    LinkSource m_link;
    std::weak_ptr<ATCServer> m_lender;
    std::unique_ptr<ObexSession> m_session;
    int m_sessions = 0;
    qint64 m_pastBytes = 0; // of the sessions that ended
    int m_pastRequests = 0;
};

} // namespace tsr::phone
