// What clients say in well-formed requests. A line of the input is a transaction: its code, then
// arguments: a number, [numbers] for a vector, or a text from a quotation mark to the end of the
// line. "run N" lets N seconds pass, "zones N" sets all zones (m°C), "dump TEXT" asks for a dump.

#include <charconv>
#include <string>
#include <string_view>

#include "FuzzPhone.h"
#include "Target.h"

namespace {

constexpr int kMostLines = 64;
constexpr int64_t kMostSeconds = 60;

/** Takes what stands before the next `end`, and that. */
std::string_view cut(std::string_view& rest, char end) {
    const std::string_view taken = rest.substr(0, rest.find(end));
    rest.remove_prefix(std::min(rest.size(), taken.size() + 1));
    return taken;
}

/** 0 for what is no number. */
int32_t numberOf(std::string_view text) {
    int32_t value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

std::vector<int32_t> vectorOf(std::string_view text) {
    std::vector<int32_t> values;
    while (!text.empty()) {
        values.push_back(numberOf(cut(text, ',')));
    }
    return values;
}

sim::Argument takeArgument(std::string_view& rest) {
    if (rest.front() == '"') {
        const std::string text(rest.substr(1));
        rest = {};
        return text;
    }
    const std::string_view word = cut(rest, ' ');
    if (word.starts_with('[')) {
        return vectorOf(word.substr(1));
    }
    return numberOf(word);
}

void send(FuzzPhone& phone, uint32_t code, std::string_view arguments) {
    sim::Transact transact;
    transact.code = code;
    while (!arguments.empty()) {
        transact.args.push_back(takeArgument(arguments));
    }
    phone.perform(transact);
}

void act(FuzzPhone& phone, std::string_view line) {
    const std::string_view word = cut(line, ' ');
    if (word == "run") {
        phone.run(std::clamp<int64_t>(numberOf(line), 0, kMostSeconds) * 1000);
    } else if (word == "zones") {
        phone.setZones(numberOf(line));
    } else if (word == "dump") {
        phone.perform(sim::Dump{{std::string(line)}});
    } else {
        send(phone, static_cast<uint32_t>(numberOf(word)), line);
    }
}

}  // namespace

void fuzzClients(Bytes data) {
    FuzzPhone& phone = FuzzPhone::get();
    phone.setZones(41000);
    std::string_view rest = textOf(data);
    for (int i = 0; i < kMostLines && !rest.empty(); ++i) {
        act(phone, cut(rest, '\n'));
    }
    phone.run(6000);
}
