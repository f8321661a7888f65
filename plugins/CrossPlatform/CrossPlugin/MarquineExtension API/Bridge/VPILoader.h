// The agent function table: finds the agent interface library at run time and resolves its functions by name. The only
// route to the agent. Written once, during the first GetSharedInstance on the main thread; read from then on.
#pragma once

#include <memory>
#include <string>

#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"
#include "platform/Bundle.h"
#include "platform/Value.h"

class VPILoader {
 public:
  // The instance; the first call searches the library, later ones never do. Never null.
  static VPILoader* GetSharedInstance();

  virtual ~VPILoader();
  VPILoader(const VPILoader&) = delete;
  VPILoader& operator=(const VPILoader&) = delete;

  // Copies out where the library came from, its version and how many functions it lacks; whether the table can be used.
  bool IsLoaded(std::string* path, std::string* version, int* missing);
  platform::String VersionStringRef() const;
  // Fills the table from a bundle; a null bundle clears it and leaves the count of missing functions alone.
  static void ResetFunctionPointers(VPILoader* self, platform::Bundle* bundle);
  bool VerifyThatAllMembersAre(bool nonNull) const;

#define PLUGIN_INTERFACE_MEMBER(name, result, parameters) result(*pf##name) parameters = nullptr;
  PLUGIN_INTERFACE_FUNCTIONS(PLUGIN_INTERFACE_MEMBER)
#undef PLUGIN_INTERFACE_MEMBER

  static constexpr int kTableSize = 0
#define PLUGIN_INTERFACE_COUNT(name, result, parameters) +1
      PLUGIN_INTERFACE_FUNCTIONS(PLUGIN_INTERFACE_COUNT);
#undef PLUGIN_INTERFACE_COUNT

  // Tests: forgets the instance, so that the next call searches again; or puts a table of their own in its place.
  static void ResetForTesting();
  static VPILoader* UseEmptyTableForTesting();
  void SetMissingFunctionsForTesting(int missing) { nMissingFunctions = missing; }

 private:
  VPILoader();
  void FindLibrary();
  platform::BundleRef FindBundle();

  // Empty while the library came out of the plug-in's own bundle; else the folder searched, then folder and library name.
  std::string sFrameworkPath;
  std::string sFrameworkVersion;
  int nMissingFunctions = kTableSize;  // a failed load and a library that lacks every function are one state
};

// The functions' first argument. Fetched anew for each call: a relaunch of the agent replaces it. 0 without a library.
PluginInterface::FacadeHandle GetFacade();
