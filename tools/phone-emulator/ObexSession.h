// SPDX-License-Identifier: GPL-3.0-or-later
// The emulated phone's OBEX service on the serial line. AT+CPROT=? offers
// protocol 0, AT+CPROT=0 switches the line to OBEX; from then on the bytes are
// OBEX packets (CONNECT to the folder-browsing target, SETPATH, GET, PUT,
// ABORT) until a DISCONNECT gives the line back to AT commands. A byte that
// cannot begin a packet (a host typing "AT" after it gave up on OBEX) also
// ends the mode, and is then read as the start of an AT command line.
// The fault options reach OBEX through commands of the form OBEX:<OP>:<PATH>
// (OP one of CONNECT, SETPATH, GET, PUT, DELETE, DISCONNECT; PATH as
// telecom/pb/3.vcf, upper or lower case; one ending in "/" or ":" takes in all
// below it): --cme N answers response code N,
// --error answers 0xD0, --silent answers nothing, --break-after N breaks the
// line after N bytes of the answer, or of the request for a PUT.
#pragma once

#include "Dialogue.h"
#include "ObexStore.h"

#include <optional>
#include <string>
#include <vector>

namespace phone_emulator {

struct ObexReply {
    std::string bytes;
    size_t requestBytes = 0; // the size of the request this answers, for the line's timeline
    bool silent = false;
    long breakAfter = -1; // the line breaks after this many bytes of `bytes`
    std::string journal;  // the request as one line for the journal
};

struct ObexFeed {
    std::vector<ObexReply> replies;
    // Bytes of the input taken as OBEX; the rest, if any, are AT command text.
    size_t consumed = 0;
};

class ObexSession {
public:
    ObexSession(const PhoneSetup& setup, bool offered, int contactLast);

    // The line carries OBEX now.
    bool active() const { return m_active; }
    // The answer to AT+CPROT=? or AT+CPROT=0; nothing for any other command line.
    std::optional<Answer> atCommand(const std::string& line, bool echo);
    ObexFeed feed(const char* data, size_t size);
    // The line broke: back to AT commands, nothing half-received is kept.
    void reset();

private:
    struct Request {
        int opcode = -1;
        std::vector<std::string> names; // every Name header, in order; "" for an empty one
        std::string type;
        std::string target;
        std::string body;
        bool bodySeen = false;
        int setpathFlags = 0;
        size_t bytes = 0;      // request bytes received so far
        bool isDelete = false; // a PUT whose first packet is final and carries no body
        std::string faultKey;  // OBEX:<OP>:<PATH> once known
    };

    ObexReply handle(const std::string& packet);
    ObexReply finish(const Request& req, ObexReply reply);
    // The host's PUT has crossed as many bytes as a break fault lets through.
    bool putBreaks();
    ObexReply respond(int code, const std::string& headers = {}, const std::string& prefix = {}) const;
    ObexReply nextGetChunk();
    void parseHeaders(const std::string& packet, size_t offset, Request& req) const;
    std::string pathOf(const std::string& name) const;
    const Fault* faultFor(const std::string& key) const;
    std::string folderText() const;

    PhoneSetup m_setup;
    bool m_offered;
    ObexStore m_store;
    bool m_active = false;
    bool m_connected = false;
    ObexFolder m_folder;
    std::string m_buffer; // a packet being received
    Request m_request;    // a request spread over several packets
    std::string m_getRest;
    size_t m_peerMtu = 255;
};

} // namespace phone_emulator
