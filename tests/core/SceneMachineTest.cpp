#include "core/SceneMachine.h"

#include <gmock/gmock.h>

#include <set>

#include "support/LogCapture.h"

using kelvo::SceneMachine;
using testing::ElementsAreArray;

namespace {

enum Input { OP, FLASH, FOLD };

struct Step {
    Input input;
    int32_t value = 0;
};

// Writes the machine's calls down between its log lines.
class Recorder : public SceneMachine::Actions {
  public:
    explicit Recorder(std::set<std::string> missing) : mMissing(std::move(missing)) {}
    bool switchScene(const std::string& scene) override {
        write("switch " + scene);
        return !mMissing.contains(scene);
    }
    void scheduleFlash(int delayMs) override { write("flash in " + std::to_string(delayMs)); }
    void cancelFlash() override { write("no flash"); }

  private:
    static void write(const std::string& call) {
        __android_log_write(ANDROID_LOG_WARN, "test", call.c_str());
    }
    const std::set<std::string> mMissing;
};

struct Row {
    const char* name;
    std::vector<Step> before;  // the record starts after these
    Step step;
    std::vector<std::string> record;  // priority and text of a line, or a call
    std::string current;
    std::string rollback;
    std::set<std::string> missing = {};
};

std::string reload(const std::string& scene, const std::string& rollback,
                   const std::string& current) {
    return "E Reload shell fitting model config " + scene + ", Rollback scene:" + rollback +
           ", Current scene:" + current;
}

void apply(SceneMachine& machine, const Step& step) {
    switch (step.input) {
        case OP:
            return machine.applyOpCode(step.value);
        case FLASH:
            return machine.applyFlash();
        case FOLD:
            return machine.applyFold(step.value);
    }
}

std::vector<std::string> recordOf(const LogCapture& log) {
    std::vector<std::string> record;
    for (const LogCapture::Line& line : log.lines()) {
        const std::string priority = line.priority == ANDROID_LOG_ERROR   ? "E "
                                     : line.priority == ANDROID_LOG_DEBUG ? "D "
                                                                          : "";
        record.push_back(priority + line.text);
    }
    return record;
}

const std::string kLamp = "E load light lamp fitting model triggered, current scene:";
const std::string kFoldLine = "D switch screen fold fitting model Triggered";
const std::string kNoScene = "E Can't find op scene, code:";

const Row kRows[] = {
        {"first restore counts as repeated",
         {},
         {OP, 0},
         {kNoScene + "0", "E Same operator code:0"},
         "default",
         "default"},
        {"wireless charging loads",
         {},
         {OP, 3},
         {reload("wirless_charge", "default", "default"),
          "E start load wirless_charge fitting model", "switch wirless_charge"},
         "wirless_charge",
         "default"},
        {"load keeps scenes when switch fails",
         {},
         {OP, 3},
         {reload("wirless_charge", "default", "default"),
          "E start load wirless_charge fitting model", "switch wirless_charge"},
         "default",
         "default",
         {"wirless_charge"}},
        {"restore goes back",
         {{OP, 3}},
         {OP, 0},
         {kNoScene + "0", "no flash", "switch default"},
         "default",
         "default"},
        {"restore keeps scene when switch fails",
         {{OP, 3}},
         {OP, 0},
         {kNoScene + "0", "no flash", "switch default"},
         "wirless_charge",
         "default",
         {"default"}},
        {"default after wireless rolls back to wireless",
         {{OP, 3}},
         {OP, 1},
         {reload("default", "default", "wirless_charge"), "E start load default fitting model",
          "switch default"},
         "default",
         "wirless_charge"},
        {"flash waits",
         {},
         {OP, 2},
         {reload("flashon", "default", "default"), "flash in 5000", "D sendThrottlingDelayMessage"},
         "default",
         "default"},
        {"repeated flash is ignored",
         {{OP, 2}},
         {OP, 2},
         {reload("flashon", "default", "default"), "E Same operator code:2"},
         "default",
         "default"},
        {"restore cancels a waiting flash",
         {{OP, 2}},
         {OP, 0},
         {kNoScene + "0", "no flash", "switch default"},
         "default",
         "default"},
        {"wireless charging blocks flash",
         {{OP, 3}},
         {OP, 2},
         {reload("flashon", "default", "wirless_charge"),
          "E current scene is wireless charge, ignore flash scene"},
         "wirless_charge",
         "default"},
        {"flash remembers the scene before it",
         {{OP, 4}},
         {FLASH},
         {kLamp + "screen_fold", "switch flashon"},
         "flashon",
         "screen_fold"},
        {"second flash keeps rollback",
         {{OP, 4}, {FLASH}},
         {FLASH},
         {kLamp + "flashon", "switch flashon"},
         "flashon",
         "screen_fold"},
        {"failed flash still counts as flash",
         {{OP, 4}},
         {FLASH},
         {kLamp + "screen_fold", "switch flashon"},
         "flashon",
         "default",
         {"flashon"}},
        {"fold op loads",
         {},
         {OP, 4},
         {reload("screen_fold", "default", "default"), "E start load screen_fold fitting model",
          "switch screen_fold"},
         "screen_fold",
         "default"},
        {"flash blocks fold op",
         {{FLASH}},
         {OP, 4},
         {reload("screen_fold", "default", "flashon"),
          "E current scene is flashon, ignore screen fold scene"},
         "flashon",
         "default"},
        {"fold switches",
         {},
         {FOLD, 0},
         {kFoldLine, "switch screen_fold"},
         "screen_fold",
         "screen_fold"},
        {"unfold counts although switch fails",
         {{FOLD, 0}},
         {FOLD, 1},
         {kFoldLine, "switch default"},
         "default",
         "default",
         {"default"}},
        {"fold during flash is for the rollback only",
         {{FLASH}},
         {FOLD, 0},
         {kFoldLine},
         "flashon",
         "screen_fold"},
        {"unknown op code",
         {},
         {OP, 5},
         {kNoScene + "5", "E invalid op code;5"},
         "default",
         "default"},
        {"unknown op code is remembered",
         {{OP, -1}},
         {OP, -1},
         {kNoScene + "-1", "E Same operator code:-1"},
         "default",
         "default"},
};

}  // namespace

TEST(SceneMachine, decidesAndSaysSo) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.name);
        Recorder recorder(row.missing);
        SceneMachine machine(&recorder);
        LogCapture log;
        for (const Step& step : row.before) {
            apply(machine, step);
        }
        log.clear();
        apply(machine, row.step);
        EXPECT_THAT(recordOf(log), ElementsAreArray(row.record));
        EXPECT_EQ(machine.currentScene(), row.current);
        EXPECT_EQ(machine.rollbackScene(), row.rollback);
    }
}
