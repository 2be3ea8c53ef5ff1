#include "Commands.h"
#include "ServiceDump.h"
#include "Services.h"

namespace kelvoctl {

void addDump(CLI::App& app, Output& output) {
    static std::string name = kKelvo;
    CLI::App* const command = app.add_subcommand(
            "dump", "Diagnostic text of a service; what follows is for the service");
    command->add_option("--service", name, "The service that is asked")
            ->type_name("SERVICE")
            ->capture_default_str();
    command->prefix_command();
    command->fallthrough(false);
    command_line::setExamples(*command, {"kelvoctl dump", "kelvoctl dump config"});
    command->callback([&output, command] {
        dumpService(name, command->remaining(),
                    [&output](const char* bytes, size_t size) { output.write(bytes, size); });
    });
}

}  // namespace kelvoctl
