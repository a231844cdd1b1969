// SPDX-License-Identifier: GPL-3.0-or-later
// phone-emulator: an emulated phone on a pseudo-terminal. It prints the device
// path (and links it to a given path), answers the dialogue of
// docs/phone-protocol.md at a chosen line rate, and injects faults on request.
// It keeps a handle of its own on the device side, so a host may close the
// device and open it again without the emulator noticing.
#include "Dialogue.h"
#include "ObexSession.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <getopt.h>
#include <iostream>
#include <poll.h>
#include <string>
#include <termios.h>
#include <unistd.h>

using namespace phone_emulator;

namespace {

const char* const kUsage = R"(Usage: phone-emulator --dir DIR [options]

Serves an emulated phone on a pseudo-terminal and prints the device path on
standard output (again after every broken line, which opens a new device).
Calendar records are the files DIR/cal/<index>.vcs.

  --dir DIR              folder of the records (required)
  --link PATH            keep a symbolic link PATH to the current device
  --manufacturer TEXT    answer to AT+CGMI (default Tessarine)
  --model TEXT           answer to AT+CGMM (default TX1)
  --revision TEXT        answer to AT+CGMR (default 1.0)
  --serial TEXT          answer to AT+CGSN
  --first N, --last N    index range of the calendar store (default 1..100)
  --max-record N         longest record the phone takes (default 4096)
  --capacity N           records the store holds at most (default: one per index)
  --baud N               line rate; 10 bit times a byte (default 115200, 0 = unpaced)
  --latency MS           time the phone thinks before each answer (default 0)
  --journal FILE         append every command line received to FILE
  --byte-count FILE      on leaving, write the bytes received and sent and the answers given
  --line-log FILE        append the line settings the host set (e.g. "9600 7E2 rtscts")
                         to FILE before each command
  --upload-pause MS      a record upload that falls silent this long is dropped
                         with +CME ERROR: 100 (default 2000)
  --no-range             a phone without range reads (AT$ORGR=4,<from>,<to>)
  --contacts N           contact slots of the OBEX service, telecom/pb (default 500)
  --no-obex              a phone without the OBEX service (AT+CPROT is an error)
Faults (COMMAND is the text after "AT", e.g. '$ORGR' or '$ORGR=4,7'; it
matches a command that starts with it and does not go on with a digit):
  --cme N:COMMAND        answer COMMAND with +CME ERROR: N
  --error COMMAND        answer COMMAND with a bare ERROR
  --silent COMMAND       do not answer COMMAND at all
  --break-after N:COMMAND  send N bytes of the answer to COMMAND, then hang up
  --late MS:COMMAND      think MS milliseconds longer before answering COMMAND
  --misframe COMMAND     announce one byte more than a record read holds
  --busy                 answer every organiser command with +CME ERROR: 515
The same fault options reach OBEX with COMMAND = OBEX:<OP>:<PATH>, OP one of
CONNECT, SETPATH, GET, PUT, DELETE, DISCONNECT; a PATH ending in / takes in the
folder's files (--cme N answers response code N;
--break-after N counts the bytes of a PUT request, of the answer otherwise).
  --help                 this text
)";

volatile std::sig_atomic_t g_stop = 0;

struct Line {
    int master = -1;
    int slave = -1;
    std::string path;
};

long long nowNs() {
    timespec ts{};
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return ts.tv_sec * 1000000000LL + ts.tv_nsec;
}

void sleepUntil(long long ns) {
    timespec ts{};
    ts.tv_sec = ns / 1000000000LL;
    ts.tv_nsec = ns % 1000000000LL;
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &ts, nullptr) == EINTR && !g_stop) {
    }
}

bool openLine(Line& line, const std::string& link) {
    line.master = posix_openpt(O_RDWR | O_NOCTTY);
    if (line.master < 0 || grantpt(line.master) != 0 || unlockpt(line.master) != 0)
        return false;
    const char* name = ptsname(line.master);
    if (!name)
        return false;
    line.path = name;
    // Our own handle on the device side: without it the master reads EIO while no host holds the device.
    line.slave = open(name, O_RDWR | O_NOCTTY);
    if (line.slave < 0)
        return false;
    termios tio{};
    tcgetattr(line.slave, &tio);
    cfmakeraw(&tio);
    tcsetattr(line.slave, TCSANOW, &tio);
    fcntl(line.master, F_SETFL, fcntl(line.master, F_GETFL) | O_NONBLOCK);
    if (!link.empty()) {
        // Renamed into place, so the link never names nothing while it moves to a new device.
        const std::string fresh = link + ".new";
        unlink(fresh.c_str());
        if (symlink(name, fresh.c_str()) != 0 || rename(fresh.c_str(), link.c_str()) != 0)
            std::cerr << "phone-emulator: cannot link " << link << ": " << std::strerror(errno) << "\n";
    }
    std::cout << line.path << std::endl;
    return true;
}

void closeLine(Line& line) {
    if (line.master >= 0)
        close(line.master);
    if (line.slave >= 0)
        close(line.slave);
    line = Line{};
}

// The line breaks: the host's device goes dead and a new one takes its place. The
// new device is linked before the old one hangs up, so a host that reopens the link
// after the hang-up always finds the new device.
bool breakLine(Line& line, const std::string& link) {
    Line old = line;
    line = Line{};
    const bool opened = openLine(line, link);
    closeLine(old);
    return opened;
}

// Writes everything, waiting a while for a slow reader; false when the reader has gone.
bool writeAll(int fd, const char* data, size_t size) {
    while (size > 0) {
        const ssize_t n = write(fd, data, size);
        if (n > 0) {
            data += n;
            size -= size_t(n);
            continue;
        }
        if (n < 0 && errno != EAGAIN && errno != EINTR)
            return false;
        pollfd p{fd, POLLOUT, 0};
        if (poll(&p, 1, 2000) <= 0)
            return false;
    }
    return true;
}

// The line's timeline. Answers are sent on the ideal timeline of the line, not from
// whenever the emulator happened to wake, so a late wake-up is caught up.
class Pacer {
public:
    explicit Pacer(long baud) : m_byteNs(baud > 0 ? 10'000'000'000LL / baud : 0) {}
    long long bytesNs(size_t n) const { return m_byteNs * static_cast<long long>(n); }
    // When `n` bytes of the host, seen complete now, have crossed the line: they began
    // crossing no earlier than the end of our last answer.
    long long receivedAt(size_t n) const { return std::max(nowNs(), m_lineFree + bytesNs(n)); }
    // Sends the bytes from `start` at the line rate: each piece leaves when its last bit
    // would have crossed the line.
    void send(int fd, const std::string& bytes, long long start) {
        m_sent += bytes.size();
        ++m_answers;
        long long due = std::max(start, m_lineFree);
        const size_t piece = 64;
        for (size_t at = 0; at < bytes.size(); at += piece) {
            const size_t n = std::min(piece, bytes.size() - at);
            due += bytesNs(n);
            if (m_byteNs > 0)
                sleepUntil(due);
            // No one reads the device: the rest of the answer is lost, as on a real line.
            if (!writeAll(fd, bytes.data() + at, n))
                break;
        }
        m_lineFree = due;
    }

    void noteReceived(size_t n) { m_received += n; }
    // What crossed the line both ways, for benchmarks that hold a run against the line rate.
    std::string counts() const {
        return "received " + std::to_string(m_received) + "\nsent " + std::to_string(m_sent) + "\nanswers " +
               std::to_string(m_answers) + "\n";
    }

private:
    long long m_byteNs;
    long long m_lineFree = 0;
    size_t m_received = 0;
    size_t m_sent = 0;
    size_t m_answers = 0;
};

// The line settings of the device as the host set them: speed, then data bits, parity and
// stop bits as in "8N1", then the flow control (none, rtscts or xonxoff).
std::string lineSettings(int fd) {
    termios tio{};
    if (tcgetattr(fd, &tio) != 0)
        return "unknown";
    static const std::pair<speed_t, long> speeds[] = {{B1200, 1200},   {B2400, 2400},     {B4800, 4800},
                                                      {B9600, 9600},   {B19200, 19200},   {B38400, 38400},
                                                      {B57600, 57600}, {B115200, 115200}, {B230400, 230400}};
    long speed = 0;
    for (const auto& [code, rate] : speeds)
        if (cfgetospeed(&tio) == code)
            speed = rate;
    const tcflag_t size = tio.c_cflag & CSIZE;
    const char bits = size == CS5 ? '5' : size == CS6 ? '6' : size == CS7 ? '7' : '8';
    const char parity = !(tio.c_cflag & PARENB) ? 'N' : (tio.c_cflag & PARODD) ? 'O' : 'E';
    const char stop = (tio.c_cflag & CSTOPB) ? '2' : '1';
    const char* flow = (tio.c_cflag & CRTSCTS) ? "rtscts" : (tio.c_iflag & IXON) ? "xonxoff" : "none";
    return std::to_string(speed) + " " + bits + parity + stop + " " + flow;
}

bool parseCountAndCommand(const char* arg, int& n, std::string& cmd) {
    const char* colon = std::strchr(arg, ':');
    if (!colon || colon == arg)
        return false;
    char* end = nullptr;
    n = int(std::strtol(arg, &end, 10));
    if (end != colon)
        return false;
    cmd = colon + 1;
    for (char& c : cmd)
        c = char(std::toupper(static_cast<unsigned char>(c)));
    return !cmd.empty();
}

std::string upperCopy(std::string s) {
    for (char& c : s)
        c = char(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

// Answers the OBEX packets of one read at the line rate; -1 when no new line could be opened
// after a break.
int serveObex(const ObexFeed& fed, Line& line, const std::string& link, Pacer& pacer, long latencyMs,
              std::ofstream& journal) {
    for (const ObexReply& reply : fed.replies) {
        const long long answerAt = pacer.receivedAt(reply.requestBytes) + latencyMs * 1000000LL;
        sleepUntil(answerAt);
        if (journal.is_open() && !reply.journal.empty())
            journal << reply.journal << std::endl;
        if (reply.silent)
            continue;
        if (reply.breakAfter >= 0) {
            pacer.send(line.master, reply.bytes.substr(0, size_t(reply.breakAfter)), answerAt);
            return breakLine(line, link) ? 0 : -1;
        }
        pacer.send(line.master, reply.bytes, answerAt);
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    PhoneSetup setup;
    std::string link;
    std::string journalPath;
    long baud = 115200;
    long latencyMs = 0;
    long uploadPauseMs = 2000;
    std::string lineLogPath;
    std::string byteCountPath;
    int contacts = 500;
    bool obexOffered = true;
    enum {
        Dir = 1,
        Link,
        Manu,
        Model,
        Rev,
        Serial,
        First,
        Last,
        MaxRec,
        Capacity,
        Baud,
        Latency,
        Journal,
        Cme,
        PlainErr,
        Silent,
        Break,
        Busy,
        Late,
        Misframe,
        NoRange,
        UploadPause,
        LineLog,
        ByteCount,
        Help,
        Contacts,
        NoObex
    };
    const option options[] = {{"dir", required_argument, nullptr, Dir},
                              {"link", required_argument, nullptr, Link},
                              {"manufacturer", required_argument, nullptr, Manu},
                              {"model", required_argument, nullptr, Model},
                              {"revision", required_argument, nullptr, Rev},
                              {"serial", required_argument, nullptr, Serial},
                              {"first", required_argument, nullptr, First},
                              {"last", required_argument, nullptr, Last},
                              {"max-record", required_argument, nullptr, MaxRec},
                              {"capacity", required_argument, nullptr, Capacity},
                              {"baud", required_argument, nullptr, Baud},
                              {"latency", required_argument, nullptr, Latency},
                              {"journal", required_argument, nullptr, Journal},
                              {"cme", required_argument, nullptr, Cme},
                              {"error", required_argument, nullptr, PlainErr},
                              {"silent", required_argument, nullptr, Silent},
                              {"break-after", required_argument, nullptr, Break},
                              {"busy", no_argument, nullptr, Busy},
                              {"late", required_argument, nullptr, Late},
                              {"misframe", required_argument, nullptr, Misframe},
                              {"no-range", no_argument, nullptr, NoRange},
                              {"upload-pause", required_argument, nullptr, UploadPause},
                              {"line-log", required_argument, nullptr, LineLog},
                              {"byte-count", required_argument, nullptr, ByteCount},
                              {"help", no_argument, nullptr, Help},
                              {"contacts", required_argument, nullptr, Contacts},
                              {"no-obex", no_argument, nullptr, NoObex},
                              {nullptr, 0, nullptr, 0}};
    int opt = 0;
    while ((opt = getopt_long(argc, argv, "", options, nullptr)) != -1) {
        Fault fault{};
        switch (opt) {
        case Dir:
            setup.folder = optarg;
            break;
        case Link:
            link = optarg;
            break;
        case Manu:
            setup.manufacturer = optarg;
            break;
        case Model:
            setup.model = optarg;
            break;
        case Rev:
            setup.revision = optarg;
            break;
        case Serial:
            setup.serial = optarg;
            break;
        case First:
            setup.first = std::atoi(optarg);
            break;
        case Last:
            setup.last = std::atoi(optarg);
            break;
        case MaxRec:
            setup.maxRecord = std::atoi(optarg);
            break;
        case Capacity:
            setup.capacity = std::atoi(optarg);
            break;
        case Baud:
            baud = std::atol(optarg);
            break;
        case Latency:
            latencyMs = std::atol(optarg);
            break;
        case Journal:
            journalPath = optarg;
            break;
        case Busy:
            setup.busy = true;
            break;
        case NoRange:
            setup.rangeRead = false;
            break;
        case UploadPause:
            uploadPauseMs = std::atol(optarg);
            break;
        case LineLog:
            lineLogPath = optarg;
            break;
        case ByteCount:
            byteCountPath = optarg;
            break;
        case Help:
            std::cout << kUsage;
            return 0;
        case Contacts:
            contacts = std::atoi(optarg);
            break;
        case NoObex:
            obexOffered = false;
            break;
        case Silent:
        case PlainErr:
        case Misframe:
            fault.kind = opt == Silent     ? Fault::Kind::Silence
                         : opt == Misframe ? Fault::Kind::Misframe
                                           : Fault::Kind::PlainError;
            fault.prefix = upperCopy(optarg);
            setup.faults.push_back(fault);
            break;
        case Cme:
        case Break:
        case Late:
            fault.kind = opt == Cme ? Fault::Kind::CmeError : opt == Late ? Fault::Kind::Late : Fault::Kind::BreakLine;
            if (!parseCountAndCommand(optarg, fault.value, fault.prefix)) {
                std::cerr << "phone-emulator: expected N:COMMAND, got " << optarg << "\n";
                return 2;
            }
            setup.faults.push_back(fault);
            break;
        default:
            std::cerr << kUsage;
            return 2;
        }
    }
    if (setup.folder.empty() || setup.first < 0 || setup.last < setup.first || baud < 0 || latencyMs < 0 ||
        uploadPauseMs < 1) {
        std::cerr << "phone-emulator: a folder (--dir) and a valid index range are needed\n" << kUsage;
        return 2;
    }

    std::signal(SIGTERM, [](int) { g_stop = 1; });
    std::signal(SIGINT, [](int) { g_stop = 1; });
    std::signal(SIGPIPE, SIG_IGN);

    Dialogue dialogue(setup);
    ObexSession obex(setup, obexOffered, contacts);
    Pacer pacer(baud);
    std::ofstream journal;
    if (!journalPath.empty())
        journal.open(journalPath, std::ios::app);
    std::ofstream lineLog;
    if (!lineLogPath.empty())
        lineLog.open(lineLogPath, std::ios::app);
    Line line;
    if (!openLine(line, link)) {
        std::cerr << "phone-emulator: cannot open a pseudo-terminal: " << std::strerror(errno) << "\n";
        return 1;
    }

    std::string pending;         // the command line being received, or the record of a write
    long uploadLeft = -1;        // bytes of a record still to come after a write prompt
    long long uploadHeardNs = 0; // when the last byte of a record being uploaded came
    char buf[4096];
    while (!g_stop) {
        pollfd p{line.master, POLLIN, 0};
        const int ready = poll(&p, 1, uploadLeft >= 0 ? 20 : 200);
        if (uploadLeft >= 0 && nowNs() - uploadHeardNs >= uploadPauseMs * 1000000LL) {
            // The host fell silent mid-record: drop what came and keep the stored record.
            pending.clear();
            uploadLeft = -1;
            pacer.send(line.master, dialogue.abandonUpload(), nowNs());
            continue;
        }
        if (ready <= 0)
            continue;
        const ssize_t n = read(line.master, buf, sizeof buf);
        if (n <= 0)
            continue;
        pacer.noteReceived(size_t(n));
        ssize_t i = 0;
        if (obex.active()) {
            const ObexFeed fed = obex.feed(buf, size_t(n));
            if (serveObex(fed, line, link, pacer, latencyMs, journal) < 0)
                return 1;
            i = ssize_t(fed.consumed);
        }
        for (; i < n; ++i) {
            const char c = buf[i];
            if (uploadLeft >= 0) {
                pending += c;
                uploadHeardNs = nowNs();
                if (long(pending.size()) < uploadLeft)
                    continue;
                const long long at = pacer.receivedAt(pending.size());
                pacer.send(line.master, dialogue.upload(pending), at);
                pending.clear();
                uploadLeft = -1;
                continue;
            }
            if (c == '\n' && pending.empty())
                continue;
            if (c != '\r') {
                pending += c;
                continue;
            }
            if (lineLog.is_open())
                lineLog << lineSettings(line.slave) << std::endl;
            // A whole command has crossed the line: think, then answer at the line rate.
            long long answerAt = pacer.receivedAt(pending.size() + 1) + latencyMs * 1000000LL;
            if (journal.is_open())
                journal << pending << std::endl;
            const auto protocol = obex.atCommand(pending, dialogue.echoOn());
            const Answer answer = protocol ? *protocol : dialogue.command(pending);
            pending.clear();
            answerAt += answer.delayMs * 1000000LL;
            sleepUntil(answerAt);
            if (answer.silent)
                continue;
            if (answer.breakAfter >= 0) {
                pacer.send(line.master, answer.bytes.substr(0, size_t(answer.breakAfter)), answerAt);
                uploadLeft = -1;
                if (!breakLine(line, link))
                    return 1;
                break;
            }
            pacer.send(line.master, answer.bytes, answerAt);
            if (obex.active()) {
                const ObexFeed fed = obex.feed(buf + i + 1, size_t(n - i - 1));
                if (serveObex(fed, line, link, pacer, latencyMs, journal) < 0)
                    return 1;
                break;
            }
            if (answer.uploadLength == 0) {
                pacer.send(line.master, dialogue.upload(std::string()), answerAt);
            } else if (answer.uploadLength > 0) {
                uploadLeft = answer.uploadLength;
                uploadHeardNs = nowNs();
            }
        }
    }
    if (!link.empty())
        unlink(link.c_str());
    closeLine(line);
    if (!byteCountPath.empty())
        std::ofstream(byteCountPath) << pacer.counts();
    return 0;
}
