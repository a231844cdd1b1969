// SPDX-License-Identifier: GPL-3.0-or-later
#include "ObexStore.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <utility>

namespace phone_emulator {

namespace fs = std::filesystem;

namespace {

const std::string crlf = "\r\n";

std::string lower(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return char(std::tolower(c)); });
    return s;
}

std::string xmlEscaped(const std::string& text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        default:
            out += c;
        }
    }
    return out;
}

bool readWhole(const std::string& path, std::string& out) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return false;
    out.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    return true;
}

} // namespace

ObexStore::ObexStore(const PhoneSetup& setup, int contactLast) : m_setup(setup) {
    m_cal.dir = (fs::path(setup.folder) / "cal").string();
    m_cal.extension = ".vcs";
    m_cal.first = setup.first;
    m_cal.last = setup.last;
    // The same count the AT road gives: a store counted from 0 holds one more.
    const int range = setup.first != 0 ? setup.last : setup.last + 1;
    m_cal.capacity = setup.capacity >= 0 ? std::min(setup.capacity, range) : range;
    m_pb.dir = (fs::path(setup.folder) / "pb").string();
    m_pb.extension = ".vcf";
    m_pb.first = 1;
    m_pb.last = contactLast;
    m_pb.capacity = contactLast;
    fs::create_directories(m_cal.dir);
    fs::create_directories(m_pb.dir);
}

bool ObexStore::isFolder(const ObexFolder& folder) const {
    return folder.empty() || (folder.size() == 1 && folder[0] == "telecom") || slotsOf(folder) != nullptr;
}

const ObexStore::Slots* ObexStore::slotsOf(const ObexFolder& folder) const {
    if (folder.size() != 2 || folder[0] != "telecom")
        return nullptr;
    if (folder[1] == "cal")
        return &m_cal;
    if (folder[1] == "pb")
        return &m_pb;
    return nullptr;
}

ObexStore::Slots* ObexStore::slotsOf(const ObexFolder& folder) {
    return const_cast<Slots*>(std::as_const(*this).slotsOf(folder));
}

int ObexStore::indexOf(const Slots& slots, const std::string& name) const {
    const std::string low = lower(name);
    const size_t ext = slots.extension.size();
    if (low.size() <= ext || low.compare(low.size() - ext, ext, slots.extension) != 0)
        return -1;
    const std::string digits = low.substr(0, low.size() - ext);
    if (digits.empty() || digits.size() > 6 || digits.find_first_not_of("0123456789") != std::string::npos)
        return -1;
    const int index = std::stoi(digits);
    return index >= slots.first && index <= slots.last ? index : -1;
}

std::string ObexStore::slotPath(const Slots& slots, int index) const {
    return (fs::path(slots.dir) / (std::to_string(index) + slots.extension)).string();
}

std::vector<int> ObexStore::used(const Slots& slots) const {
    std::vector<int> out;
    for (int i = slots.first; i <= slots.last; ++i)
        if (fs::exists(slotPath(slots, i)))
            out.push_back(i);
    return out;
}

std::string ObexStore::infoLog(const Slots& slots) const {
    const std::vector<int> inUse = used(slots);
    // The slot a new file took last; before any, the highest slot in use.
    const int last = slots.lastUsed >= 0 ? slots.lastUsed : (inUse.empty() ? 0 : inUse.back());
    return "MAXIMUM-RECORDS:" + std::to_string(slots.capacity) + crlf +
           "TOTAL-RECORDS:" + std::to_string(inUse.size()) + crlf + "LAST-USED-INDEX:" + std::to_string(last) + crlf;
}

std::string ObexStore::devInfo() const {
    return "MANU:" + m_setup.manufacturer + crlf + "MOD:" + m_setup.model + crlf + "SN:" + m_setup.serial + crlf +
           "FW:" + m_setup.revision + crlf;
}

std::string ObexStore::listing(const ObexFolder& folder) const {
    std::string xml = "<?xml version=\"1.0\"?>\n"
                      "<!DOCTYPE folder-listing SYSTEM \"obex-folder-listing.dtd\">\n"
                      "<folder-listing version=\"1.0\">\n";
    auto file = [&](const std::string& name, size_t size) {
        xml += "<file name=\"" + xmlEscaped(name) + "\" size=\"" + std::to_string(size) + "\"/>\n";
    };
    if (!folder.empty())
        xml += "<parent-folder/>\n";
    if (folder.empty()) {
        xml += "<folder name=\"telecom\"/>\n";
    } else if (folder.size() == 1) {
        xml += "<folder name=\"cal\"/>\n<folder name=\"pb\"/>\n";
        file("devinfo.txt", devInfo().size());
    } else if (const Slots* slots = slotsOf(folder)) {
        file("info.log", infoLog(*slots).size());
        for (const int i : used(*slots))
            file(std::to_string(i) + slots->extension, size_t(fs::file_size(slotPath(*slots, i))));
    }
    return xml + "</folder-listing>\n";
}

int ObexStore::read(const ObexFolder& folder, const std::string& name, std::string& out) const {
    out.clear();
    if (folder.size() == 1 && folder[0] == "telecom" && lower(name) == "devinfo.txt") {
        out = devInfo();
        return obex_rsp::Success;
    }
    const Slots* slots = slotsOf(folder);
    if (!slots)
        return obex_rsp::NotFound;
    if (lower(name) == "info.log") {
        out = infoLog(*slots);
        return obex_rsp::Success;
    }
    const int index = indexOf(*slots, name);
    if (index < 0 || !readWhole(slotPath(*slots, index), out))
        return obex_rsp::NotFound;
    return obex_rsp::Success;
}

int ObexStore::write(const ObexFolder& folder, const std::string& name, const std::string& data) {
    Slots* slots = slotsOf(folder);
    if (!slots)
        return obex_rsp::Forbidden;
    if (long(data.size()) > m_setup.maxRecord)
        return obex_rsp::TooLarge;
    const std::vector<int> inUse = used(*slots);
    int index = -1;
    const bool isNew = lower(name) == "new" + slots->extension;
    if (isNew) {
        if (int(inUse.size()) >= slots->capacity)
            return obex_rsp::Forbidden; // no free entry
        // The slot after the highest in use; past the end, the lowest free one.
        index = inUse.empty() ? slots->first : inUse.back() + 1;
        for (int i = slots->first; index > slots->last && i <= slots->last; ++i)
            if (!std::binary_search(inUse.begin(), inUse.end(), i))
                index = i;
    } else {
        index = indexOf(*slots, name);
        if (index < 0)
            return obex_rsp::Forbidden; // the phone names its files itself
        if (!fs::exists(slotPath(*slots, index)) && int(inUse.size()) >= slots->capacity)
            return obex_rsp::Forbidden;
    }
    const std::string path = slotPath(*slots, index);
    const std::string temp = path + ".part";
    {
        std::ofstream out(temp, std::ios::binary | std::ios::trunc);
        out.write(data.data(), std::streamsize(data.size()));
        if (!out)
            return obex_rsp::Internal;
    }
    std::error_code ec;
    fs::rename(temp, path, ec);
    if (ec)
        return obex_rsp::Internal;
    if (isNew)
        slots->lastUsed = index;
    return obex_rsp::Success;
}

int ObexStore::remove(const ObexFolder& folder, const std::string& name) {
    Slots* slots = slotsOf(folder);
    if (!slots)
        return obex_rsp::NotFound;
    if (lower(name) == "info.log")
        return obex_rsp::Forbidden;
    const int index = indexOf(*slots, name);
    if (index < 0 || !fs::exists(slotPath(*slots, index)))
        return obex_rsp::NotFound;
    fs::remove(slotPath(*slots, index));
    return obex_rsp::Success;
}

} // namespace phone_emulator
