// The order matters: everything that can be wrong with the arguments first, without a
// display; then the windows; then the claim to the host's signature; then the plug-in, which
// gets its adapter before the run loop can dispatch an event to it.
#import "RunCommand.h"

#include "Effects.h"
#include "FirstClick.h"
#include "ImportApart.h"
#import "KOApplication.h"
#import "KOApplicationController.h"
#import "KOListeningPorts.h"
#import "KORehearsal.h"
#include "LostDisplay.h"
#import "PlugInLoader.h"
#import "TerminationSignals.h"
#include "WaitingNews.h"

#include <Formats/EventTable.h>
#include <Platform/AppleEventsProcess.h>
#import <StandIns/Korvo/Adapter/Owned.h>
#import <StandIns/Korvo/Adapter/StringConversion.h>
#include <StandIns/Korvo/Library/LibraryFile.h>
#include <StandIns/Korvo/Windows/Appearance.h>
#import <StandIns/Korvo/Windows/MainMenu.h>

#import <Cocoa/Cocoa.h>

#include <algorithm>
#include <cstdlib>

namespace korvo::application {
namespace {

using adapter::Owned;

constexpr int badArgument = 2;

int fail(const std::string &line, int status) {
  complain(line);
  return status;
}

// NSArray of KOLibrary; the error is one line.
std::expected<NSArray *, std::string> openLibraries(
    const std::vector<std::filesystem::path> &files) {
  NSMutableArray *libraries = [NSMutableArray array];
  WaitingNews news;
  for (const std::filesystem::path &file : files) {
    auto opened = library::openLibraryFile(file, importApart, news.ofImport());
    if (!opened) {
      return std::unexpected(opened.error());
    }
    for (const engine::ImportProblem &problem : opened->problems) {
      complain(problem.message());
    }
    const auto library =
        Owned<KOLibrary *>::taking([[KOLibrary alloc] initWithLibrary:std::move(opened->library)]);
    [libraries addObject:library.get()];
  }
  return libraries;
}

// The styles named on the command line count for this run; the error is one line.
std::expected<void, std::string> pickStyles(const RunHost &run, adapter::StyleShelf &shelf) {
  std::vector<std::string> favorites;
  for (const std::string &name : run.favorites) {
    const auto found = shelf.catalog().find(name);
    if (!found) {
      return std::unexpected(found.error());
    }
    if (std::ranges::find(favorites, found->name.title) == favorites.end()) {
      favorites.push_back(found->name.title);
    }
  }
  if (!favorites.empty()) {
    shelf.useFavorites(std::move(favorites));
  }
  if (run.defaultStyle) {
    const auto found = shelf.catalog().find(*run.defaultStyle);
    if (!found) {
      return std::unexpected(found.error());
    }
    shelf.useDefaultStyle(found->name.title);
  }
  return {};
}

// NSArray of KOReference.
std::expected<NSArray *, std::string> findTags(const std::vector<std::string> &tags,
                                               KOLibrary *library) {
  NSMutableArray *references = [NSMutableArray array];
  for (const std::string &tag : tags) {
    const auto rows = [library library].matching(tag);
    if (!rows) {
      return std::unexpected(rows.error());
    }
    if (rows->empty()) {
      return std::unexpected("--select: nothing in the library matches " + tag);
    }
    for (const library::ReferenceRow row : *rows) {
      [references addObject:[library referenceAtRow:row]];
    }
  }
  return references;
}

// False without a display.
bool connectToDisplay() {
  @try {
    [KOApplication sharedApplication];
  } @catch (...) {
    return false;
  }
  return NSApp != nil;
}

std::string claimFailure(OSStatus status) {
  switch (status) {
    case portInUse:
      return "another korvo is running";
    case connectionInvalid:
      return "there is no session bus to be reached (DBUS_SESSION_BUS_ADDRESS)";
    default:
      return "Apple Events cannot be received (status " + std::to_string(status) + ")";
  }
}

std::filesystem::path plugInBeside(const std::filesystem::path &program) {
  return program.parent_path().parent_path() / "KorvoMellelPlugin.bundle";
}

}  // namespace

int runHost(const RunHost &run, const std::filesystem::path &program) {
  if (![KOTerminationSignals watch]) {
    return fail("signals cannot be received", EXIT_FAILURE);
  }
  const auto libraries = openLibraries(run.libraries);
  if (!libraries) {
    return fail(libraries.error(), EXIT_FAILURE);
  }
  adapter::StyleShelf shelf(engine::StyleCatalog::installed());
  if (auto picked = pickStyles(run, shelf); !picked) {
    return fail(picked.error(), badArgument);
  }
  const auto selected = findTags(run.selectedTags, [*libraries objectAtIndex:0]);
  if (!selected) {
    return fail(selected.error(), badArgument);
  }

  [KOListeningPorts neverWait];
  windows::registerAppearance();
  if (!connectToDisplay()) {
    return fail("there is no display to be reached (DISPLAY)", EXIT_FAILURE);
  }
  tellLossOfDisplay();
  const auto signals = Owned<KOTerminationSignals *>::taking(
      [[KOTerminationSignals alloc] initWithTarget:NSApp action:@selector(endRun)]);
  const auto controller = Owned<KOApplicationController *>::taking(
      [[KOApplicationController alloc] initWithLibraries:*libraries styles:shelf]);
  [NSApp setDelegate:(id)controller.get()];
  windows::installMainMenu(controller.get());
  [[controller.get() mainWindow] selectReferences:*selected];
  [controller.get() showLibrary:nil];

  KOApplicationController *interface = controller.get();
  const OSStatus claimed = platform::startReceivingAppleEvents(
      formats::korvoSignature, [interface] { [interface comeToFront]; });
  if (claimed != noErr) {
    return fail(claimFailure(claimed), EXIT_FAILURE);
  }
  const auto started =
      startPlugIn(run.plugIn.value_or(plugInBeside(program)), [controller.get() adapter]);
  if (!started) {
    platform::stopReceivingAppleEvents();
    return fail(started.error(), EXIT_FAILURE);
  }

  announce("ready");
  prepareForFirstClick();
  const auto rehearsal =
      Owned<KORehearsal *>::taking([[KORehearsal alloc] initWithLibrary:[*libraries objectAtIndex:0]
                                                                 styles:shelf]);
  [rehearsal.get() start];
  [[controller.get() mainWindow] startFollowing];
  [NSApp run];
  [controller.get() savePlaces];
  [[controller.get() mainWindow] stopFollowing];
  [rehearsal.get() stop];
  [NSApp setDelegate:nil];
  platform::stopReceivingAppleEvents();
  return EXIT_SUCCESS;
}

}  // namespace korvo::application
