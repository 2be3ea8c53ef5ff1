#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace kelvo {

/**
 * Makes the calls to one service of another process, which may hang: a call runs on a thread of
 * this object and is waited for at most a second. What is late counts as absent. Until it returns,
 * the service is not asked again; an error line says so, and an info line that it is back.
 *
 * The thread comes to be with the first call and is used for all, one call at a time, so callers
 * take turns. A call that is late still runs to its end: it must hold on to all that it uses, none
 * of it on the stack of its caller. A caller holds no lock that others wait for.
 *
 * Thread-safe. A program that runs in virtual time links another definition of this class.
 */
class PatientCaller {
  public:
    /** `service` is how the log names it, "the charger service". */
    explicit PatientCaller(std::string service);
    /** A call that is out goes on. */
    ~PatientCaller();
    PatientCaller(const PatientCaller&) = delete;
    PatientCaller& operator=(const PatientCaller&) = delete;

    /** What `call` returns, or `absent` when it is late or an earlier one is still out. */
    template <typename Result, typename Call>
    Result ask(Result absent, Call call) {
        // Not on the stack: a late call answers when the caller is gone.
        const auto answer = std::make_shared<Result>();
        const bool inTime = perform([answer, call = std::move(call)] { *answer = call(); });
        return inTime ? std::move(*answer) : absent;
    }

  private:
    class Line;

    /** Whether the call was made and has returned. */
    bool perform(std::function<void()> call);

    const std::shared_ptr<Line> mLine;  // the thread's as well; null in virtual time
};

}  // namespace kelvo
