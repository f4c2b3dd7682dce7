// vncore convert: a picture through any number of operations, in the order in which they are
// written.
#include <memory>

#include "tools/commands/chain.h"
#include "tools/commands/commands.h"
#include "tools/commands/convert_picture.h"

namespace vn::tool {
namespace {

struct ConvertOptions {
  std::string in, out;
  ChainOptions chain;
  Conversion conversion;
};

}  // namespace

void AddConvertCommand(CLI::App& app) {
  CLI::App* const convert = app.add_subcommand("convert", "Change a picture, or its file format");
  const auto options = std::make_shared<ConvertOptions>();
  Conversion* const conversion = &options->conversion;
  convert->add_option("IN", options->in, "The picture; - is standard input")->required();
  convert->add_option("OUT", options->out, "The result; - is standard output, with --format")
      ->required();
  options->chain.AddTo(convert);
  AddReadOptions(convert, &conversion->read, " and around turned pictures");
  AddAllPagesOption(convert, &conversion->allPages);
  conversion->write.AddTo(convert);
  AddStorageOptions(convert, &conversion->storage);
  convert->add_flag("--keep-size", options->chain.geometry.keepSize,
                    "Pictures keep their size when they are turned: corners are cut off");
  convert->callback([convert, options, conversion] {
    options->chain.geometry.background = conversion->read.background;
    conversion->operations = options->chain.Build(*convert);
    ConvertPicture(*conversion, options->in, options->out);
  });
}

}  // namespace vn::tool
