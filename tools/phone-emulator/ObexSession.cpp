// SPDX-License-Identifier: GPL-3.0-or-later
#include "ObexSession.h"

#include <algorithm>
#include <cctype>

namespace phone_emulator {

namespace {

const std::string crlf = "\r\n";

// Requests (with or without the final bit) and their headers.
constexpr int kConnect = 0x80;
constexpr int kDisconnect = 0x81;
constexpr int kPut = 0x02;
constexpr int kGet = 0x03;
constexpr int kSetPath = 0x05;
constexpr int kAbort = 0xFF;
constexpr int kFinal = 0x80;
constexpr int kContinue = 0x90;

constexpr int hName = 0x01;
constexpr int hType = 0x42;
constexpr int hLength = 0xC3;
constexpr int hTarget = 0x46;
constexpr int hWho = 0x4A;
constexpr int hBody = 0x48;
constexpr int hEndOfBody = 0x49;
constexpr int hConnectionId = 0xCB;

// The phone's largest packet; a host may ask for smaller ones.
constexpr size_t kOwnMtu = 4096;
const std::string kConnectPrefix = std::string("\x10\x00", 2) + char(kOwnMtu >> 8) + char(kOwnMtu & 0xFF);

const std::string kFolderBrowsing("\xF9\xEC\x7B\xC4\x95\x3C\x11\xD2\x98\x4E\x52\x54\x00\xDC\x9E\x09", 16);

std::string upper(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return char(std::toupper(c)); });
    return s;
}

std::string be16(size_t v) {
    return {char((v >> 8) & 0xFF), char(v & 0xFF)};
}

std::string be32(uint32_t v) {
    return {char(v >> 24), char((v >> 16) & 0xFF), char((v >> 8) & 0xFF), char(v & 0xFF)};
}

size_t readBe16(const std::string& s, size_t at) {
    return (size_t(uint8_t(s[at])) << 8) | uint8_t(s[at + 1]);
}

std::string bytesHeader(int id, const std::string& value) {
    return char(id) + be16(value.size() + 3) + value;
}

// A Name header's text: big-endian UTF-16 with a closing zero, kept to ASCII here.
std::string unicodeText(const std::string& raw) {
    std::string out;
    for (size_t i = 0; i + 1 < raw.size(); i += 2) {
        const unsigned unit = (unsigned(uint8_t(raw[i])) << 8) | uint8_t(raw[i + 1]);
        if (unit == 0)
            break;
        out += unit < 0x80 ? char(unit) : '?';
    }
    return out;
}

bool startsPacket(uint8_t byte) {
    switch (byte) {
    case kConnect:
    case kDisconnect:
    case kPut:
    case kPut | kFinal:
    case kGet:
    case kGet | kFinal:
    case kSetPath | kFinal:
    case kAbort:
        return true;
    default:
        return false;
    }
}

} // namespace

ObexSession::ObexSession(const PhoneSetup& setup, bool offered, int contactLast)
    : m_setup(setup), m_offered(offered), m_store(setup, contactLast) {}

void ObexSession::reset() {
    m_active = false;
    m_connected = false;
    m_folder.clear();
    m_buffer.clear();
    m_request = Request{};
    m_getRest.clear();
}

const Fault* ObexSession::faultFor(const std::string& key) const {
    const bool obex = key.rfind("OBEX:", 0) == 0;
    for (const Fault& f : m_setup.faults) {
        if (key.rfind(f.prefix, 0) != 0)
            continue;
        // An OBEX path names one file or folder; one ending in "/" or ":" names all below it.
        if (obex && key != f.prefix && f.prefix.back() != '/' && f.prefix.back() != ':')
            continue;
        if (key.size() > f.prefix.size() && std::isdigit(static_cast<unsigned char>(key[f.prefix.size()])))
            continue;
        return &f;
    }
    return nullptr;
}

std::optional<Answer> ObexSession::atCommand(const std::string& line, bool echo) {
    const std::string up = upper(line);
    if (!m_offered || (up != "AT+CPROT=?" && up != "AT+CPROT=0"))
        return std::nullopt;
    Answer a;
    const std::string echoed = echo ? line + "\r" : std::string();
    if (const Fault* f = faultFor(up.substr(2))) {
        if (f->kind == Fault::Kind::Silence)
            a.silent = true;
        else if (f->kind == Fault::Kind::BreakLine)
            a.breakAfter = f->value;
        else
            a.bytes =
                echoed + crlf +
                (f->kind == Fault::Kind::CmeError ? "+CME ERROR: " + std::to_string(f->value) : std::string("ERROR")) +
                crlf;
        if (f->kind != Fault::Kind::BreakLine)
            return a;
    }
    if (up == "AT+CPROT=?") {
        a.bytes = echoed + crlf + "+CPROT: (0)" + crlf + crlf + "OK" + crlf;
        return a;
    }
    // From the end of this answer the line carries OBEX.
    a.bytes = echoed + crlf + "CONNECT" + crlf;
    reset();
    m_active = a.breakAfter < 0;
    return a;
}

ObexFeed ObexSession::feed(const char* data, size_t size) {
    ObexFeed out;
    // Where the first byte of `data` stands in the buffer.
    long dataStart = long(m_buffer.size());
    m_buffer.append(data, size);
    while (m_active && !m_buffer.empty()) {
        if (!startsPacket(uint8_t(m_buffer[0]))) {
            // Not OBEX: the host speaks AT again.
            out.consumed = size_t(std::max(0L, -dataStart));
            reset();
            return out;
        }
        if (putBreaks()) {
            ObexReply r;
            r.breakAfter = 0;
            r.journal = "OBEX break " + m_request.faultKey.substr(5);
            out.replies.push_back(r);
            reset();
            out.consumed = size;
            return out;
        }
        if (m_buffer.size() < 3)
            break;
        const size_t length = readBe16(m_buffer, 1);
        if (length < 3 || length > kOwnMtu) {
            // A packet the phone cannot take: refuse it and drop what came with it.
            ObexReply r = respond(obex_rsp::BadRequest);
            r.requestBytes = m_buffer.size();
            out.replies.push_back(r);
            m_buffer.clear();
            m_request = Request{};
            break;
        }
        if (m_buffer.size() < length)
            break;
        const std::string packet = m_buffer.substr(0, length);
        m_buffer.erase(0, length);
        dataStart -= long(length);
        ObexReply reply = handle(packet);
        reply.requestBytes = length;
        out.replies.push_back(reply);
        if (reply.breakAfter >= 0) {
            reset();
            break;
        }
    }
    out.consumed = size;
    if (!m_active && !m_buffer.empty()) {
        // What came after a DISCONNECT is AT command text.
        out.consumed = size - std::min(size, m_buffer.size());
        m_buffer.clear();
    }
    return out;
}

bool ObexSession::putBreaks() {
    const int opcode = uint8_t(m_buffer[0]);
    if ((opcode & ~kFinal) != kPut)
        return false;
    std::string key = m_request.faultKey;
    if (key.empty()) {
        // The first packet is still coming: its name tells whether the line is to break in it.
        Request partial;
        parseHeaders(m_buffer.substr(0, m_buffer.size() >= 3 ? std::min(m_buffer.size(), readBe16(m_buffer, 1)) : 0), 3,
                     partial);
        if (partial.names.empty())
            return false;
        key = upper("OBEX:PUT:" + pathOf(partial.names.front()));
        m_request.faultKey.clear();
    }
    const Fault* f = faultFor(key);
    if (!f || f->kind != Fault::Kind::BreakLine || m_request.bytes + m_buffer.size() < size_t(f->value))
        return false;
    m_request.faultKey = key;
    return true;
}

void ObexSession::parseHeaders(const std::string& packet, size_t at, Request& req) const {
    while (at < packet.size()) {
        const int id = uint8_t(packet[at]);
        size_t length = 0;
        switch (id & 0xC0) {
        case 0x00:
        case 0x40:
            if (at + 3 > packet.size())
                return;
            length = readBe16(packet, at + 1);
            break;
        case 0x80:
            length = 2;
            break;
        default:
            length = 5;
        }
        if (length < 2 || at + length > packet.size())
            return;
        const std::string value = (id & 0xC0) <= 0x40 ? packet.substr(at + 3, length - 3) : std::string();
        if (id == hName)
            req.names.push_back(unicodeText(value));
        else if (id == hType)
            req.type = value.substr(0, value.find('\0'));
        else if (id == hTarget)
            req.target = value;
        else if (id == hBody || id == hEndOfBody) {
            req.body += value;
            req.bodySeen = true;
        }
        at += length;
    }
}

std::string ObexSession::folderText() const {
    std::string out;
    for (const std::string& name : m_folder)
        out += (out.empty() ? "" : "/") + name;
    return out;
}

std::string ObexSession::pathOf(const std::string& name) const {
    const std::string folder = folderText();
    return folder.empty() ? name : name.empty() ? folder : folder + "/" + name;
}

ObexReply ObexSession::respond(int code, const std::string& headers, const std::string& prefix) const {
    ObexReply r;
    r.bytes = char(code) + be16(3 + prefix.size() + headers.size()) + prefix + headers;
    return r;
}

ObexReply ObexSession::nextGetChunk() {
    // Each answer carries as much of the object as the host's packets hold.
    const size_t room = std::min(m_peerMtu, kOwnMtu) - 6;
    if (m_getRest.size() <= room) {
        ObexReply r = respond(obex_rsp::Success, bytesHeader(hEndOfBody, m_getRest));
        m_getRest.clear();
        return r;
    }
    ObexReply r = respond(kContinue, bytesHeader(hBody, m_getRest.substr(0, room)));
    m_getRest.erase(0, room);
    return r;
}

// Applies a fault to the answer of a whole request, if one is set for it.
ObexReply ObexSession::finish(const Request& req, ObexReply reply) {
    // Every answer to a CONNECT, a refusal too, carries the version, flags and packet size.
    const std::string connectPrefix = req.opcode == kConnect ? kConnectPrefix : std::string();
    if (const Fault* f = faultFor(req.faultKey)) {
        switch (f->kind) {
        case Fault::Kind::Silence:
            reply = ObexReply{};
            reply.silent = true;
            m_getRest.clear();
            break;
        case Fault::Kind::PlainError:
            reply = respond(obex_rsp::Internal, {}, connectPrefix);
            m_getRest.clear();
            break;
        case Fault::Kind::CmeError:
            reply = respond(f->value | kFinal, {}, connectPrefix);
            m_getRest.clear();
            break;
        case Fault::Kind::BreakLine:
            reply.breakAfter = f->value;
            break;
        }
    }
    reply.journal = "OBEX " + req.faultKey.substr(5);
    return reply;
}

ObexReply ObexSession::handle(const std::string& packet) {
    const int opcode = uint8_t(packet[0]);
    const bool final = (opcode & kFinal) != 0;
    const int op = opcode == kConnect || opcode == kDisconnect || opcode == kAbort ? opcode : (opcode & ~kFinal);

    if (op == kAbort) {
        m_request = Request{};
        m_getRest.clear();
        ObexReply r = respond(obex_rsp::Success);
        r.journal = "OBEX ABORT";
        return r;
    }
    // A GET answered in several packets: each further request asks for the next one.
    if (op == kGet && !m_getRest.empty() && m_request.opcode == kGet) {
        m_request.bytes += packet.size();
        ObexReply reply = nextGetChunk();
        if (m_getRest.empty())
            m_request = Request{}; // the last piece: the next GET is a new request
        return reply;
    }
    if (m_request.opcode != op)
        m_request = Request{};
    Request& req = m_request;
    req.opcode = op;
    req.bytes += packet.size();

    size_t headersAt = 3;
    if (op == kConnect) {
        if (packet.size() < 7)
            return respond(obex_rsp::BadRequest);
        m_peerMtu = std::max<size_t>(255, readBe16(packet, 5));
        headersAt = 7;
    } else if (op == kSetPath) {
        if (packet.size() < 5)
            return respond(obex_rsp::BadRequest);
        req.setpathFlags = uint8_t(packet[3]);
        headersAt = 5;
    }
    const bool firstPacket = req.faultKey.empty();
    parseHeaders(packet, headersAt, req);
    const std::string name = req.names.empty() ? std::string() : req.names.front();

    if (firstPacket) {
        std::string opName;
        switch (op) {
        case kConnect:
            opName = "CONNECT";
            break;
        case kDisconnect:
            opName = "DISCONNECT";
            break;
        case kSetPath:
            opName = "SETPATH";
            break;
        case kGet:
            opName = "GET";
            break;
        default:
            req.isDelete = final && !req.bodySeen;
            opName = req.isDelete ? "DELETE" : "PUT";
        }
        req.faultKey = upper("OBEX:" + opName + ":" + pathOf(name));
        if (op == kConnect || op == kDisconnect)
            req.faultKey = "OBEX:" + opName;
    }
    if (!final) {
        // More of the request follows; a PUT's body is written only once it is whole.
        return respond(kContinue);
    }

    ObexReply reply;
    if (op == kConnect) {
        if (req.target != kFolderBrowsing) {
            reply = respond(obex_rsp::Forbidden, {}, kConnectPrefix);
        } else {
            m_connected = true;
            m_folder.clear();
            reply = respond(obex_rsp::Success, bytesHeader(hWho, kFolderBrowsing) + char(hConnectionId) + be32(1),
                            kConnectPrefix);
        }
    } else if (op == kDisconnect) {
        reply = respond(obex_rsp::Success);
    } else if (!m_connected) {
        reply = respond(obex_rsp::Forbidden);
    } else if (op == kSetPath) {
        ObexFolder next = m_folder;
        if ((req.setpathFlags & 1) && !next.empty())
            next.pop_back();
        if (!req.names.empty()) {
            if (name.empty())
                next.clear();
            else
                next.push_back(name);
        }
        if (m_store.isFolder(next)) {
            m_folder = next;
            reply = respond(obex_rsp::Success);
        } else {
            reply = respond(obex_rsp::NotFound);
        }
    } else if (op == kGet) {
        if (req.type == "x-obex/folder-listing") {
            ObexFolder folder = m_folder;
            if (!name.empty())
                folder.push_back(name);
            if (m_store.isFolder(folder)) {
                m_getRest = m_store.listing(folder);
                reply = nextGetChunk();
            } else {
                reply = respond(obex_rsp::NotFound);
            }
        } else {
            std::string data;
            const int code = m_store.read(m_folder, name, data);
            if (code == obex_rsp::Success) {
                m_getRest = data;
                reply = nextGetChunk();
            } else {
                reply = respond(code);
            }
        }
    } else if (op == kPut) {
        // A fault answers before the phone touches its store.
        const Fault* f = faultFor(req.faultKey);
        if (f && f->kind != Fault::Kind::BreakLine)
            reply = respond(obex_rsp::Success);
        else if (name.empty())
            reply = respond(obex_rsp::BadRequest);
        else
            reply = respond(req.isDelete ? m_store.remove(m_folder, name) : m_store.write(m_folder, name, req.body));
    } else {
        reply = respond(obex_rsp::NotImplemented);
    }
    reply = finish(req, reply);
    if (m_getRest.empty() || op != kGet)
        m_request = Request{};
    if (op == kDisconnect && reply.breakAfter < 0 && !reply.silent) {
        // The answer goes out, then the line speaks AT again.
        m_active = false;
        m_connected = false;
    }
    return reply;
}

} // namespace phone_emulator
