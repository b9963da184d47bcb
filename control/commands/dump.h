#ifndef LUMADOT_CONTROL_COMMANDS_DUMP_H
#define LUMADOT_CONTROL_COMMANDS_DUMP_H

#include "control/session.h"

namespace CLI {
class App;
}

// The commands below `dump`; none needs a controller.
namespace control {

void defineDumpInfo(CLI::App& app, Action& chosen);
void defineDumpShow(CLI::App& app, Action& chosen);
void defineDumpExport(CLI::App& app, Action& chosen);

}  // namespace control

#endif
