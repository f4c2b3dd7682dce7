// vncore convert: a picture through any number of operations, in the order in which they are
// written.
#include <deque>
#include <map>
#include <memory>
#include <utility>
#include <variant>

#include "tools/commands/commands.h"
#include "tools/commands/picture_options.h"
#include "tools/operations/geometry_operations.h"
#include "tools/operations/headless_device.h"
#include "tools/operations/load_bitmap.h"
#include "tools/operations/operation.h"
#include "tools/operations/option_values.h"
#include "tools/operations/reduction.h"
#include "tools/operations/save_bitmap.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/progress_bar.h"

namespace vn::tool {
namespace {

struct ConvertOptions {
  std::string in, out;
  int32_t storage = STORAGE_AUTO;
  bool lowMemory = false;
  ReadOptions read;
  WriteOptions write;
  GeometrySettings geometry;
  std::vector<OperationKind> geometryKinds;
  // The option of each kind of operation, and of each setting of a reduction. Options hold their
  // values themselves, one for each time they were written.
  std::map<const CLI::Option*, const OperationKind*> kinds;
  std::map<const CLI::Option*, std::string> settings;
};

[[noreturn]] void Refuse(const std::string& option, const std::string& value,
                         const std::string& form) {
  throw Failure(option + ": '" + value + "' is not of the form " + form);
}

const char* FormOf(const std::string& option) {
  for (const Reduction::Setting& setting : Reduction::Settings()) {
    if (option == setting.option) return setting.form;
  }
  return "";
}

// The operations in the order of the command line. Settings of a reduction join the one that they
// stand next to.
class Chain {
 public:
  void Add(const OperationKind& kind, const std::string& value) {
    const auto operation = kind.parse(value);
    if (!operation) Refuse(kind.option, value, kind.form);
    links_.emplace_back(*operation);
  }
  void AddSetting(const std::string& option, const std::string& value) {
    auto* open = links_.empty() ? nullptr : std::get_if<Reduction>(&links_.back());
    if (!open || !open->Lacks(option))
      open = &std::get<Reduction>(links_.emplace_back(Reduction()));
    if (!open->Take(option, value)) Refuse(option, value, FormOf(option));
  }
  std::vector<Operation> Build() const {
    std::vector<Operation> operations;
    for (const auto& link : links_) {
      const auto* reduction = std::get_if<Reduction>(&link);
      operations.push_back(reduction ? reduction->Build() : std::get<Operation>(link));
    }
    return operations;
  }

 private:
  std::vector<std::variant<Operation, Reduction>> links_;
};

std::vector<Operation> OperationsOf(const CLI::App& command, const ConvertOptions& options) {
  Chain chain;
  std::map<const CLI::Option*, size_t> seen;
  for (const CLI::Option* option : command.parse_order()) {
    const size_t which = seen[option]++;
    const auto value = [&] {
      const auto& values = option->results();
      return which < values.size() ? values[which] : std::string();
    };
    if (const auto kind = options.kinds.find(option); kind != options.kinds.end()) {
      chain.Add(*kind->second, value());
    } else if (const auto setting = options.settings.find(option);
               setting != options.settings.end()) {
      chain.AddSetting(setting->second, value());
    }
  }
  return chain.Build();
}

void Convert(const ConvertOptions& options, const std::vector<Operation>& operations) {
  if (options.lowMemory) ClaimWin32s();
  const auto picture = OpenPicture(options.in, options.read);
  auto file = OpenPictureFile(options.out);
  Bitmap bitmap;
  const auto stages = static_cast<int32_t>(operations.size()) + 2;
  ProgressBar bar("converting " + options.in);
  bar.BeginStage(0, stages);
  LoadBitmap(*picture, options.storage, bitmap);
  for (int32_t stage = 1; stage < stages - 1; ++stage) {
    bar.BeginStage(stage, stages);
    operations[static_cast<size_t>(stage - 1)](bitmap);
  }
  bar.BeginStage(stages - 1, stages);
  PictureInfo info = InfoOf(bitmap);
  info.metadata = options.write.MetadataOf(picture->Info());
  const auto sink = CreatePicture(std::move(file), info);
  SaveBitmap(bitmap, *sink);
  sink->Finish();
}

// Adds an option that may be written any number of times.
CLI::Option* AddRepeated(CLI::App* command, const std::string& name, const std::string& form,
                         const std::string& help) {
  if (form.empty()) return command->add_flag(name, help);
  return command->add_option(name)
      ->description(help)
      ->type_name(form)
      ->type_size(1)
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
      ->group("Operations, done in the order written");
}

}  // namespace

void AddConvertCommand(CLI::App& app) {
  CLI::App* const convert = app.add_subcommand("convert", "Change a picture, or its file format");
  const auto options = std::make_shared<ConvertOptions>();
  convert->add_option("IN", options->in, "The picture")->required();
  convert->add_option("OUT", options->out, "The result")->required();
  options->geometryKinds = GeometryKinds(&options->geometry);
  for (const auto* const kinds : {&OperationKinds(), &std::as_const(options->geometryKinds)}) {
    for (const OperationKind& kind : *kinds) {
      CLI::Option* const option = AddRepeated(convert, kind.option, kind.form, kind.help);
      option->group("Operations, done in the order written");
      options->kinds[option] = &kind;
    }
  }
  for (const Reduction::Setting& setting : Reduction::Settings()) {
    CLI::Option* const option = AddRepeated(convert, setting.option, setting.form, setting.help);
    options->settings[option] = setting.option;
  }
  AddParsed(convert, "--storage", &options->storage, &ParseStorage, "auto|disk|memory",
            "Where the picture's pixels lie");
  convert->add_flag("--low-memory", options->lowMemory,
                    "Claim Win32s: larger pictures lie in temporary files");
  AddReadOptions(convert, &options->read, " and around turned pictures");
  options->write.AddTo(convert);
  convert->add_flag("--keep-size", options->geometry.keepSize,
                    "Pictures keep their size when they are turned: corners are cut off");
  convert->callback([convert, options] {
    options->geometry.background = options->read.background;
    Convert(*options, OperationsOf(*convert, *options));
  });
}

}  // namespace vn::tool
