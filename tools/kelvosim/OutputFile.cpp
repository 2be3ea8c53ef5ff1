#include "OutputFile.h"

#include <iostream>
#include <stdexcept>

OutputFile::OutputFile(const std::string& name) : mName(name) {
    if (name != "-") {
        mFile.open(name, std::ios::binary | std::ios::trunc);
        check();
    }
}

std::ostream& OutputFile::stream() {
    return mName == "-" ? std::cout : mFile;
}

void OutputFile::finish() {
    stream().flush();
    check();
}

void OutputFile::check() {
    if (!stream()) {
        throw std::runtime_error("cannot be written: " + mName);
    }
}
