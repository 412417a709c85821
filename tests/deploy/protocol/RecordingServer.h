#pragma once
// A scripted device for frame tests: listens on one address and port, and for each
// expected connection reads the given number of request bytes, answers with the
// scripted reply, and records every byte the client sent, including anything it
// sends after the script (read until the client closes).

#include <cstdint>
#include <string>
#include <thread>
#include <vector>

namespace rqtest {

struct Exchange {
    std::size_t expect; // bytes of the connection read in all before answering
    std::string reply;  // bytes to send back
    bool close = false; // close right after the reply
};

class RecordingServer {
public:
    RecordingServer(const std::string& ip, int port,
                    std::vector<std::vector<Exchange>> connections);
    ~RecordingServer();
    RecordingServer(const RecordingServer&) = delete;
    RecordingServer& operator=(const RecordingServer&) = delete;

    // Waits for the script to end; one string of received bytes per connection.
    const std::vector<std::string>& received();

private:
    void run();

    int listener_ = -1;
    std::vector<std::vector<Exchange>> script_;
    std::vector<std::string> received_;
    std::thread thread_;
};

// Byte helpers for expected frames.
std::string be32(uint32_t value);
std::string le32(uint32_t value);
std::string counted(const std::string& text); // n, text, zero byte
std::string frame(uint8_t command, const std::string& payload);
std::string replyHeader(uint8_t type, uint32_t length);

} // namespace rqtest
