#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

/**
 * The driver's commands (BC_) or returns (BR_) as they stand one behind the other: each is a code
 * and as many bytes as the code says. The same code on the hub's side and on the process's.
 */
namespace binderhub {

/** One of them; what it points at is the stream's. */
struct Command {
    uint32_t code = 0;
    std::span<const uint8_t> argument;

    size_t size() const { return sizeof(code) + argument.size(); }

    /** The argument as the type that belongs to the code. */
    template <typename T>
    T as() const {
        T value;
        memcpy(&value, argument.data(), sizeof(value));
        return value;
    }
};

/** Whether the hub carries out this command. */
bool isCommand(uint32_t code);

/** Whether this can be a return: which ones there are is for its receiver to know. */
bool isReturn(uint32_t code);

/** Takes them off the front of a stream. */
class CommandReader {
  public:
    /** `isKnown` is isCommand or isReturn. */
    CommandReader(std::span<const uint8_t> stream, bool (*isKnown)(uint32_t code))
          : mRest(stream), mIsKnown(isKnown) {}

    bool atEnd() const { return mRest.empty(); }

    /** The next one; false, and the reader stays where it is, when that is cut or not known. */
    bool next(Command* command);

  private:
    std::span<const uint8_t> mRest;
    bool (*const mIsKnown)(uint32_t code);
};

}  // namespace binderhub
