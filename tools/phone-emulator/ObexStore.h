// SPDX-License-Identifier: GPL-3.0-or-later
// The emulated phone seen as a small file system, the way its OBEX service
// shows it: telecom/devinfo.txt, telecom/cal/<n>.vcs and telecom/pb/<n>.vcf with
// an info.log in each. The calendar files are the very records the AT dialogue
// reads and writes (DIR/cal), so both roads see one store; contacts live in
// DIR/pb. Results are OBEX response codes; it knows nothing of packets.
#pragma once

#include "Dialogue.h"

#include <map>
#include <string>
#include <vector>

namespace phone_emulator {

namespace obex_rsp {
inline constexpr int Success = 0xA0;
inline constexpr int BadRequest = 0xC0;
inline constexpr int Forbidden = 0xC3;
inline constexpr int NotFound = 0xC4;
inline constexpr int TooLarge = 0xCD;
inline constexpr int Internal = 0xD0;
inline constexpr int NotImplemented = 0xD1;
} // namespace obex_rsp

// A folder below the root, one name per level: {"telecom", "pb"}.
using ObexFolder = std::vector<std::string>;

class ObexStore {
public:
    // `contactLast`: the phone keeps contacts 1..contactLast.
    ObexStore(const PhoneSetup& setup, int contactLast);

    bool isFolder(const ObexFolder& folder) const;
    // The x-obex/folder-listing document of a folder.
    std::string listing(const ObexFolder& folder) const;
    int read(const ObexFolder& folder, const std::string& name, std::string& out) const;
    // Creates or replaces a file; "new.vcf" (or .vcs) takes the next free slot.
    int write(const ObexFolder& folder, const std::string& name, const std::string& data);
    int remove(const ObexFolder& folder, const std::string& name);

private:
    struct Slots {
        std::string dir;       // the folder in DIR holding <n>.<ext>
        std::string extension; // ".vcs" or ".vcf"
        int first = 1;
        int last = 0;
        int capacity = 0;  // records the store holds at most
        int lastUsed = -1; // the slot the last new file took; -1: none since the start
    };
    const Slots* slotsOf(const ObexFolder& folder) const;
    Slots* slotsOf(const ObexFolder& folder);
    // The index a file name names in these slots, or -1.
    int indexOf(const Slots& slots, const std::string& name) const;
    std::string slotPath(const Slots& slots, int index) const;
    std::vector<int> used(const Slots& slots) const;
    std::string infoLog(const Slots& slots) const;
    std::string devInfo() const;

    PhoneSetup m_setup;
    Slots m_cal;
    Slots m_pb;
};

} // namespace phone_emulator
