// vncore convert: a picture through any number of operations, in the order in which they are
// written.
#include <memory>

#include "tools/commands/batch.h"
#include "tools/commands/chain.h"
#include "tools/commands/commands.h"
#include "tools/commands/convert_picture.h"
#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

struct ConvertOptions {
  std::vector<std::string> files;
  ChainOptions chain;
  Conversion conversion;
  Batch batch;
};

void Convert(const ConvertOptions& options) {
  const std::vector<std::string>& files = options.files;
  if (!options.batch.into.empty()) return ConvertBatch(options.conversion, options.batch, files);
  if (files.size() != 2) {
    throw Failure(
        "convert takes a picture and a result, or pictures and --into (see vncore convert "
        "--help)");
  }
  ConvertPicture(options.conversion, files[0], files[1]);
}

}  // namespace

void AddConvertCommand(CLI::App& app) {
  CLI::App* const convert = app.add_subcommand("convert", "Change a picture, or its file format");
  const auto options = std::make_shared<ConvertOptions>();
  Conversion* const conversion = &options->conversion;
  convert
      ->add_option("IN", options->files,
                   "The picture, and OUT, the result; - is standard input, or standard output with "
                   "--format. With --into: any number of pictures")
      ->type_name("OUT")
      ->required();
  options->chain.AddTo(convert);
  AddReadOptions(convert, &conversion->read, " and around turned pictures");
  AddAllPagesOption(convert, &conversion->allPages);
  conversion->write.AddTo(convert);
  AddStorageOptions(convert, &conversion->storage);
  options->batch.AddTo(convert);
  convert->add_flag("--keep-size", options->chain.geometry.keepSize,
                    "Pictures keep their size when they are turned: corners are cut off");
  convert->callback([convert, options, conversion] {
    options->chain.geometry.background = conversion->read.background;
    conversion->operations = options->chain.Build(*convert);
    Convert(*options);
  });
}

}  // namespace vn::tool
