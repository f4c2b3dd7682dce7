#include "tools/commands/chain.h"

#include <utility>
#include <variant>

#include "tools/operations/reduction.h"
#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

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
      if (reduction && reduction->IsDitheringAlone()) {
        throw Failure(
            "--dither needs --colors, --depth or --palette beside it: to how many colours?");
      }
      operations.push_back(reduction ? reduction->Build() : std::get<Operation>(link));
    }
    return operations;
  }

 private:
  std::vector<std::variant<Operation, Reduction>> links_;
};

// Adds an option that may be written any number of times.
CLI::Option* AddRepeated(CLI::App* command, const std::string& name, const std::string& form,
                         const std::string& help) {
  CLI::Option* const option = form.empty()
                                  ? command->add_flag(name, help)
                                  : command->add_option(name)
                                        ->description(help)
                                        ->type_name(form)
                                        ->type_size(1)
                                        ->expected(1)
                                        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  return option->group("Operations, done in the order written");
}

}  // namespace

void ChainOptions::AddTo(CLI::App* command) {
  geometryKinds_ = GeometryKinds(&geometry);
  draw_ = std::make_unique<DrawSettings>();
  drawKinds_ = DrawKinds(draw_.get());
  for (const auto* const kinds :
       {&OperationKinds(), &std::as_const(geometryKinds_), &std::as_const(drawKinds_)}) {
    for (const OperationKind& kind : *kinds)
      kinds_[AddRepeated(command, kind.option, kind.form, kind.help)] = &kind;
  }
  for (const Reduction::Setting& setting : Reduction::Settings())
    settings_[AddRepeated(command, setting.option, setting.form, setting.help)] = setting.option;
}

std::vector<Operation> ChainOptions::Build(const CLI::App& command) const {
  *draw_ = {};
  Chain chain;
  std::map<const CLI::Option*, size_t> seen;
  for (const CLI::Option* option : command.parse_order()) {
    const size_t which = seen[option]++;
    const auto value = [&] {
      const auto& values = option->results();
      return which < values.size() ? values[which] : std::string();
    };
    if (const auto kind = kinds_.find(option); kind != kinds_.end()) {
      chain.Add(*kind->second, value());
    } else if (const auto setting = settings_.find(option); setting != settings_.end()) {
      chain.AddSetting(setting->second, value());
    }
  }
  return chain.Build();
}

}  // namespace vn::tool
