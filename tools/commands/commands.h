// The tool's subcommands. Each adds its options to the command line and runs from there.
#ifndef VNCORE_TOOLS_COMMANDS_H
#define VNCORE_TOOLS_COMMANDS_H

#include <CLI/CLI.hpp>

namespace vn::tool {

void AddPaintCommand(CLI::App& app);
void AddEffectCommand(CLI::App& app);
void AddConvertCommand(CLI::App& app);
void AddChartCommand(CLI::App& app);
void AddInfoCommand(CLI::App& app);
void AddPalettesCommand(CLI::App& app);
void AddPrintCommand(CLI::App& app);
void AddClipboardCommands(CLI::App& app);

}  // namespace vn::tool

#endif
