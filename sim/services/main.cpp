// phoneservice: one service of a simulated phone as a process, started by kelvosim.

#include <binder_linux/BinderProbe.h>

#include "CommandLine.h"
#include "sim/services/ServiceProcess.h"

namespace {

int serve(const std::string& name) {
    std::string error;
    if (!android::isBinderDriverReachable(&error)) {
        throw std::runtime_error(error);
    }
    return sim::serveService(name);
}

}  // namespace

int main(int argc, char** argv) {
    return command_line::run(argc, argv, "phoneservice",
                             "One service of a simulated phone, as kelvosim starts it",
                             [](CLI::App& app, int& status) {
                                 static std::string name;
                                 app.add_option("NAME", name, "The service")->required();
                                 app.callback([&status] { status = serve(name); });
                             });
}
