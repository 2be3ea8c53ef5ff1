// phoneservice: one service of a simulated phone as a process, started by kelvosim.

#include <limits>
#include <memory>

// The binder headers need the two above.
#include <binder/BinderProbe.h>

#include <iostream>

#include "sim/services/ServiceProcess.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "phoneservice: expected the name of a service: command line\n";
        return 2;
    }
    try {
        std::string error;
        if (!android::isBinderDriverReachable(&error)) {
            throw std::runtime_error(error);
        }
        return sim::serveService(argv[1]);
    } catch (const std::exception& error) {
        std::cerr << "phoneservice: " << error.what() << '\n';
        return 1;
    }
}
