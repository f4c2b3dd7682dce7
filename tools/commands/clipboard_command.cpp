// vncore copy, vncore paste: pictures to and from the desktop's clipboard, through any operations.
#include <memory>
#include <optional>
#include <string>

#include "tools/commands/chain.h"
#include "tools/commands/commands.h"
#include "tools/commands/convert_picture.h"
#include "tools/desktop/clipboard.h"
#include "tools/terminal/option_values.h"

namespace vn::tool {
namespace {

struct ClipboardOptions {
  std::string file;
  ClipboardType type = ClipboardType::kPng;
  ChainOptions chain;
  Conversion conversion;
};

std::optional<ClipboardType> ParseType(const std::string& text) {
  if (text == "png") return ClipboardType::kPng;
  return text == "bmp" ? std::optional(ClipboardType::kBmp) : std::nullopt;
}

void Copy(const ClipboardOptions& options) {
  const TemporaryFile file("clipboard", ExtensionOf(options.type));
  Conversion conversion = options.conversion;
  // BMP has no room for it, and nobody is to be warned of that.
  if (options.type == ClipboardType::kBmp) conversion.write.strip = true;
  ConvertPicture(conversion, options.file, file.Path());
  CopyFileToDesktop(file.Path(), options.type);
}

void Paste(const ClipboardOptions& options) {
  const PastedPicture picture;
  ConvertPicture(options.conversion, picture.Path(), options.file);
}

// What both have, and how either runs.
void AddRest(CLI::App* command, const std::shared_ptr<ClipboardOptions>& options,
             void (*run)(const ClipboardOptions&)) {
  Conversion* const conversion = &options->conversion;
  options->chain.AddTo(command);
  AddReadOptions(command, &conversion->read, " and around turned pictures");
  AddStorageOptions(command, &conversion->storage);
  command->callback([=] {
    options->chain.geometry.background = conversion->read.background;
    conversion->operations = options->chain.Build(*command);
    run(*options);
  });
}

}  // namespace

void AddClipboardCommands(CLI::App& app) {
  CLI::App* const copy = app.add_subcommand("copy", "Copy a picture to the desktop's clipboard");
  auto options = std::make_shared<ClipboardOptions>();
  copy->add_option("IN", options->file, "The picture")->required();
  AddParsed(copy, "--type", &options->type, &ParseType, "png|bmp",
            "What other programs get, png if not given");
  AddStripOption(copy, &options->conversion.write.strip);
  AddRest(copy, options, &Copy);

  CLI::App* const paste =
      app.add_subcommand("paste", "Write the picture on the desktop's clipboard to a file");
  options = std::make_shared<ClipboardOptions>();
  paste->add_option("OUT", options->file, "The file; its format follows from the name")->required();
  options->conversion.write.AddTo(paste);
  AddRest(paste, options, &Paste);
}

}  // namespace vn::tool
