// SPDX-License-Identifier: GPL-3.0-or-later
#include "Dialogue.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace phone_emulator {

namespace fs = std::filesystem;

namespace {

std::string upper(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return char(std::toupper(c)); });
    return s;
}

// "4,12,300" after a prefix: the numbers, or an empty list when one is not a number.
std::vector<long> numbers(const std::string& text) {
    std::vector<long> out;
    std::stringstream in(text);
    std::string piece;
    while (std::getline(in, piece, ',')) {
        if (piece.empty() || piece.find_first_not_of("0123456789") != std::string::npos)
            return {};
        out.push_back(std::stol(piece));
    }
    return out;
}

const std::string crlf = "\r\n";

} // namespace

Dialogue::Dialogue(PhoneSetup setup) : m_setup(std::move(setup)) {
    fs::create_directories(fs::path(m_setup.folder) / "cal");
}

std::string Dialogue::final(const std::string& body) const {
    return body + crlf + "OK" + crlf;
}

std::string Dialogue::error(int n) const {
    if (m_cmee == 0)
        return crlf + "ERROR" + crlf;
    return crlf + "+CME ERROR: " + std::to_string(n) + crlf;
}

std::string Dialogue::recordPath(int index) const {
    return (fs::path(m_setup.folder) / "cal" / (std::to_string(index) + ".vcs")).string();
}

int Dialogue::usedRecords() const {
    int used = 0;
    for (int i = m_setup.first; i <= m_setup.last; ++i)
        used += fs::exists(recordPath(i)) ? 1 : 0;
    return used;
}

std::string Dialogue::recordBlock(int index, long extraLength) const {
    const std::string header = "$ORGR: " + std::to_string(index) + ",";
    std::ifstream in(recordPath(index), std::ios::binary);
    if (!in)
        return header + std::to_string(extraLength) + crlf;
    std::string data((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    return header + std::to_string(long(data.size()) + extraLength) + crlf + data + crlf;
}

const Fault* Dialogue::faultFor(const std::string& cmd) const {
    for (const Fault& f : m_setup.faults) {
        if (cmd.rfind(f.prefix, 0) != 0)
            continue;
        if (cmd.size() > f.prefix.size() && std::isdigit(static_cast<unsigned char>(cmd[f.prefix.size()])))
            continue;
        return &f;
    }
    return nullptr;
}

Answer Dialogue::command(const std::string& line) {
    Answer a;
    const std::string up = upper(line);
    if (up.rfind("AT", 0) != 0) {
        a.bytes = crlf + "ERROR" + crlf;
        return a;
    }
    const std::string cmd = up.substr(2);
    const std::string echo = m_echo ? line + "\r" : std::string();

    if (const Fault* f = faultFor(cmd)) {
        if (f->kind == Fault::Kind::Silence) {
            a.silent = true;
            return a;
        }
        if (f->kind == Fault::Kind::PlainError) {
            a.bytes = echo + crlf + "ERROR" + crlf;
            return a;
        }
        if (f->kind == Fault::Kind::CmeError) {
            a.bytes = echo + error(f->value);
            return a;
        }
        if (f->kind == Fault::Kind::Late)
            a.delayMs = f->value;
        else if (f->kind == Fault::Kind::BreakLine)
            a.breakAfter = f->value;
    }
    // A misframed answer announces one byte more than its record holds.
    const long extraLength = faultFor(cmd) && faultFor(cmd)->kind == Fault::Kind::Misframe ? 1 : 0;

    auto reply = [&](const std::string& body) { a.bytes = echo + body; };
    const bool organiser = cmd.rfind("$ORG", 0) == 0;
    if (organiser && m_setup.busy) {
        reply(error(515));
        return a;
    }

    if (cmd.empty()) {
        reply(final(""));
    } else if (cmd == "E0" || cmd == "E1") {
        m_echo = cmd == "E1";
        reply(final(""));
    } else if (cmd.rfind("+CMEE=", 0) == 0 && numbers(cmd.substr(6)).size() == 1) {
        m_cmee = int(numbers(cmd.substr(6))[0]);
        reply(final(""));
    } else if (cmd == "+CGMI") {
        reply(final(crlf + m_setup.manufacturer + crlf));
    } else if (cmd == "+CGMM") {
        reply(final(crlf + m_setup.model + crlf));
    } else if (cmd == "+CGMR") {
        reply(final(crlf + m_setup.revision + crlf));
    } else if (cmd == "+CGSN") {
        reply(final(crlf + m_setup.serial + crlf));
    } else if (cmd.rfind("$ORGS=", 0) == 0) {
        const auto n = numbers(cmd.substr(6));
        if (n.size() != 1)
            reply(error(50));
        else if (n[0] != 4)
            reply(error(4));
        else
            reply(final(crlf + "$ORGS: 4," + std::to_string(m_setup.first) + "," + std::to_string(m_setup.last) + "," +
                        std::to_string(usedRecords()) + crlf));
    } else if (cmd.rfind("$ECHO=", 0) == 0) {
        // The probe: the token comes back as sent, so its answer cannot be an old one.
        const std::string token = line.substr(line.find('=') + 1);
        const bool plain = !token.empty() && token.size() <= 32 &&
                           std::all_of(token.begin(), token.end(), [](unsigned char c) { return std::isalnum(c); });
        reply(plain ? final(crlf + "$ECHO: " + token + crlf) : error(50));
    } else if (cmd.rfind("$ORGR=", 0) == 0) {
        const auto n = numbers(cmd.substr(6));
        if (n.size() == 3 && n[0] == 4 && m_setup.rangeRead) {
            // A range: every record from <from> to <to>, in order, before the one final result.
            if (!inStore(int(n[1])) || !inStore(int(n[2])) || n[2] < n[1]) {
                reply(error(21));
            } else {
                std::string body = crlf;
                for (long i = n[1]; i <= n[2]; ++i)
                    body += recordBlock(int(i), extraLength);
                reply(final(body));
            }
        } else if (n.size() != 2 || n[0] != 4) {
            reply(error(50));
        } else if (!inStore(int(n[1]))) {
            reply(error(21));
        } else {
            reply(final(crlf + recordBlock(int(n[1]), extraLength)));
        }
    } else if (cmd.rfind("$ORGW=", 0) == 0) {
        const auto n = numbers(cmd.substr(6));
        if (n.size() != 3 || n[0] != 4)
            reply(error(50));
        else if (!inStore(int(n[1])))
            reply(error(21));
        else if (n[2] > m_setup.maxRecord)
            reply(error(24));
        else if (m_setup.capacity >= 0 && !fs::exists(recordPath(int(n[1]))) && usedRecords() >= m_setup.capacity)
            reply(error(20)); // memory full: a new record finds no room
        else {
            m_pendingIndex = int(n[1]);
            a.uploadLength = n[2];
            reply(crlf + "> ");
        }
    } else if (cmd.rfind("$ORGD=", 0) == 0) {
        const auto n = numbers(cmd.substr(6));
        if (n.size() != 2 || n[0] != 4)
            reply(error(50));
        else if (!inStore(int(n[1])))
            reply(error(21));
        else if (!fs::exists(recordPath(int(n[1]))))
            reply(error(22));
        else {
            fs::remove(recordPath(int(n[1])));
            reply(final(""));
        }
    } else {
        reply(crlf + "ERROR" + crlf);
    }
    return a;
}

std::string Dialogue::upload(const std::string& record) {
    const std::string path = recordPath(m_pendingIndex);
    const std::string temp = path + ".part";
    {
        std::ofstream out(temp, std::ios::binary | std::ios::trunc);
        out.write(record.data(), std::streamsize(record.size()));
        if (!out)
            return error(23);
    }
    std::error_code ec;
    fs::rename(temp, path, ec);
    m_pendingIndex = -1;
    return ec ? error(23) : final("");
}

std::string Dialogue::abandonUpload() {
    m_pendingIndex = -1;
    return error(100);
}

} // namespace phone_emulator
