// LoadLibraryA, GetProcAddress: the system's modules, and what the library looks up in them by
// name.
#include <strings.h>

#include <atomic>
#include <cstring>
#include <string_view>

#include <vncore/platform/headless/headless.h>

namespace headless {
namespace {

constexpr const char* kModules[] = {"KERNEL32", "GDI32", "USER32"};

// The library, when asked for without a name.
constinit char program = 0;

HMODULE FindModule(const char* name) {
  if (!name) return reinterpret_cast<HMODULE>(&program);
  std::string_view stem(name);
  constexpr std::string_view kEnding = ".DLL";
  if (stem.size() > kEnding.size() &&
      strcasecmp(name + stem.size() - kEnding.size(), kEnding.data()) == 0) {
    stem.remove_suffix(kEnding.size());
  }
  for (const char* const& module : kModules) {
    if (stem.size() == std::strlen(module) && strncasecmp(module, name, stem.size()) == 0) {
      return reinterpret_cast<HMODULE>(const_cast<const char**>(&module));
    }
  }
  return nullptr;
}

// Procedures by name. Tests put others in, or take one out, with Headless_SetProcedure.
struct Procedure {
  const char* module;
  const char* name;
  std::atomic<FARPROC> address;
};
Procedure procedures[] = {
    {"GDI32", "CreateDIBSection",
     reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(&CreateDIBSection))},
    {"KERNEL32", "UTRegister", nullptr},
    {"KERNEL32", "UTUnRegister", nullptr},
};

Procedure* FindProcedure(HMODULE module, const char* name) {
  for (Procedure& procedure : procedures) {
    if (FindModule(procedure.module) == module && std::strcmp(procedure.name, name) == 0) {
      return &procedure;
    }
  }
  return nullptr;
}

constinit std::atomic<UINT> errorMode{0};

}  // namespace
}  // namespace headless

HMODULE LoadLibraryA(LPCSTR name) { return name ? headless::FindModule(name) : nullptr; }
BOOL FreeLibrary(HMODULE module) { return module != nullptr; }
HMODULE GetModuleHandleA(LPCSTR name) { return headless::FindModule(name); }

FARPROC GetProcAddress(HMODULE module, LPCSTR name) {
  const headless::Procedure* procedure = headless::FindProcedure(module, name);
  return procedure ? procedure->address.load() : nullptr;
}

int32_t Headless_SetProcedure(const char* module, const char* name, FARPROC address) {
  headless::Procedure* procedure = headless::FindProcedure(headless::FindModule(module), name);
  if (!procedure) return 0;
  procedure->address = address;
  return 1;
}

UINT SetErrorMode(UINT mode) { return headless::errorMode.exchange(mode); }
