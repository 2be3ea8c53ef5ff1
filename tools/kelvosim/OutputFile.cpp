#include "OutputFile.h"

#include <cerrno>
#include <iostream>

#include "Failure.h"

namespace {

constexpr char kStandard[] = "-";

}  // namespace

OutputFile::OutputFile(const std::string& name) : mName(name) {
    if (name == kStandard) {
        return;
    }
    std::string opened = name;
    if (!common::isWrittenInPlace(name)) {
        mNew.emplace(name);
        opened = "/proc/self/fd/" + std::to_string(mNew->fd());
    }
    mFile.open(opened, std::ios::binary);
    command_line::checkWritten(mFile, name);
}

std::ostream& OutputFile::stream() {
    return mName == kStandard ? std::cout : mFile;
}

void OutputFile::noteLoss() {
    if (!stream() && mError == 0) {
        mError = errno;
    }
}

void OutputFile::finish() {
    stream().flush();
    noteLoss();
    if (mError != 0) {
        command_line::failWriting(mError, mName == kStandard ? "standard output" : mName);
    }
    if (mNew) {
        mNew->finish();
    }
}
