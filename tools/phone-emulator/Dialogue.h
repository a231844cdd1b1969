// SPDX-License-Identifier: GPL-3.0-or-later
// The emulated phone's side of the dialogue: takes one command line and tells
// what to answer, keeping the calendar store as files cal/<index>.vcs in a
// folder. It knows nothing of the device; main.cpp moves the bytes.
#pragma once

#include <string>
#include <vector>

namespace phone_emulator {

struct Fault {
    enum class Kind { CmeError, PlainError, Silence, BreakLine, Late, Misframe };
    Kind kind;
    std::string prefix; // the command after "AT", upper case; matches when not followed by a digit
    int value = 0;      // the error number, the bytes sent before the line breaks, or the extra milliseconds
};

struct PhoneSetup {
    std::string folder;
    std::string manufacturer = "Tessarine";
    std::string model = "TX1";
    std::string revision = "1.0";
    std::string serial = "490154203237518";
    int first = 1;
    int last = 100;
    int maxRecord = 4096;
    int capacity = -1; // records the store holds at most; -1: one per index
    bool busy = false;
    bool rangeRead = true; // the store answers AT$ORGR=4,<from>,<to>
    std::vector<Fault> faults;
};

// What to do after a command line.
struct Answer {
    std::string bytes;      // sent back, paced
    bool silent = false;    // nothing at all is sent
    long breakAfter = -1;   // the line breaks after this many bytes of `bytes`
    long uploadLength = -1; // after `bytes` (the prompt) this many bytes of record follow
    long delayMs = 0;       // thinks this much longer than usual before answering
};

class Dialogue {
public:
    explicit Dialogue(PhoneSetup setup);

    Answer command(const std::string& line);
    // The record that followed a write prompt; gives the final result.
    std::string upload(const std::string& record);
    // The host fell silent in the middle of a record: the partial record is dropped, the
    // stored one stays as it was, and this is the final result.
    std::string abandonUpload();
    bool echoOn() const { return m_echo; }

private:
    std::string final(const std::string& body) const;
    std::string error(int n) const;
    std::string recordPath(int index) const;
    // "$ORGR: <index>,<len>" CR LF and the record's bytes CR LF; a record of no bytes has only the header.
    std::string recordBlock(int index, long extraLength) const;
    bool inStore(int index) const { return index >= m_setup.first && index <= m_setup.last; }
    int usedRecords() const;
    const Fault* faultFor(const std::string& upper) const;

    PhoneSetup m_setup;
    bool m_echo = true;
    int m_cmee = 0;
    int m_pendingIndex = -1;
};

} // namespace phone_emulator
