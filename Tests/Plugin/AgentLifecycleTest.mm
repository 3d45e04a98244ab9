// The one agent, its event handlers, and its answers to the host.

#import "Support/AgentTest.h"

namespace plugin_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::string_literals;

class AgentLifecycle : public AgentTest {};

TEST_F(AgentLifecycle, FirstMessageInstallsTheEightHandlersInOrder) {
  std::vector<std::string> installed;
  for (const platform::InstalledHandler &handler : startUp().handlers) {
    EXPECT_EQ(handler.eventClass, code("mLeL"));
    EXPECT_NE(handler.target, nullptr);
    installed.push_back(characters(handler.eventID) + " " + handler.selector);
  }
  EXPECT_THAT(installed, ElementsAre("FIND handleFindStringEvent:withReplyEvent:",
                                     "FNDN handleFindCitationEvent:withReplyEvent:",
                                     "IMHR handleHandshakeEvent:withReplyEvent:",
                                     "LVBQ handleCreateBibliographyEvent:withReplyEvent:",
                                     "PRSQ handlePreliminaryScanEvent:withReplyEvent:",
                                     "Rmci handleScanCitationsEvent:withReplyEvent:",
                                     "SCNQ handleFinalScanEvent:withReplyEvent:",
                                     "SYNC handleImportCitationsEvent:withReplyEvent:"));
}

TEST_F(AgentLifecycle, FirstMessageSendsThePreferencesOnce) {
  ASSERT_EQ(startUp().sent.size(), 1u);
  EXPECT_EQ(characters(startUp().sent[0].eventID), "PREF");
  // A Mellel may answer at once.
  EXPECT_EQ(startUp().handlersAtFirstSend, 8u);
}

TEST_F(AgentLifecycle, HandlersBelongToTheOneInstance) {
  for (const platform::InstalledHandler &handler : platform::installedEventHandlers()) {
    EXPECT_EQ(handler.target, agent_);
  }
}

TEST_F(AgentLifecycle, AnswersTheHostsQuestions) {
  EXPECT_EQ(str([agentClass_ registrationName]), "Mellel");
  EXPECT_EQ([(Class<KorvoPlugin>)agentClass_ version], 2);
  EXPECT_EQ(str([agentClass_ protocolType]), "Word processor (custom interface)");
  EXPECT_EQ([agentClass_ isConfigurable], NO);
  EXPECT_EQ([agentClass_ isAvailable], YES);
  EXPECT_EQ([agentClass_ isEnabledByDefault], YES);
  [agentClass_ configure];
  [agent_ start];
  EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(AgentLifecycle, AdoptsBothPluginProtocols) {
  EXPECT_TRUE([agentClass_ conformsToProtocol:@protocol(KorvoPlugin)]);
  EXPECT_TRUE([agentClass_ conformsToProtocol:@protocol(KorvoWordProcessorIntegrationPlugin)]);
  EXPECT_EQ([agentClass_ superclass], [NSObject class]);
}

TEST_F(AgentLifecycle, DefaultInstanceIsAlwaysTheSameObject) {
  EXPECT_EQ([agentClass_ defaultInstance], agent_);
  EXPECT_EQ([agentClass_ defaultInstance], [agentClass_ defaultInstance]);
}

TEST_F(AgentLifecycle, AdapterIsKeptUntilNilReplacesIt) {
  EXPECT_EQ((id)[agentClass_ adapter], host_);
  RecordingHost *other = [[RecordingHost alloc] init];
  [agentClass_ setAdapter:other];
  EXPECT_EQ([other retainCount], 2u);
  [agentClass_ setAdapter:other];
  EXPECT_EQ([other retainCount], 2u);
  [agentClass_ setAdapter:nil];
  EXPECT_EQ((id)[agentClass_ adapter], nil);
  EXPECT_EQ([other retainCount], 1u);
  [other release];
}

TEST_F(AgentLifecycle, FreshAgentKnowsNoDocumentAndHasBothFlagsOff) {
  EXPECT_EQ(documentID(), 0u);
  EXPECT_FALSE(generatesBibliography());
  EXPECT_FALSE(hasGivenLibraryAdvice());
}

TEST_F(AgentLifecycle, SecondInitSetsTheVariablesAnew) {
  setDocumentID(0x100000007);
  setGeneratesBibliography(true);
  [(id)agent_ setValue:[NSNumber numberWithBool:YES] forKey:@"displayedWrongLibraryMessage"];
  EXPECT_EQ([agent_ init], agent_);
  EXPECT_EQ(documentID(), 0u);
  EXPECT_FALSE(generatesBibliography());
  EXPECT_FALSE(hasGivenLibraryAdvice());
}

TEST_F(AgentLifecycle, InstanceVariablesStandInTheirOrder) {
  unsigned count = 0;
  Ivar *variables = class_copyIvarList(agentClass_, &count);
  std::vector<std::string> names;
  for (unsigned index = 0; index < count; ++index) {
    names.emplace_back(ivar_getName(variables[index]));
  }
  free(variables);
  EXPECT_THAT(names,
              ElementsAre("documentID", "displayedWrongLibraryMessage", "generateBibliography"));
}

std::vector<std::string> installedEvents() {
  std::vector<std::string> events;
  for (const platform::InstalledHandler &handler : platform::installedEventHandlers()) {
    events.push_back(characters(handler.eventID));
  }
  return events;
}

TEST_F(AgentLifecycle, RemovalTakesFourHandlersAndLeavesFour) {
  [agent_ unregisterMellelEventHandlers];
  EXPECT_THAT(installedEvents(), ElementsAre("LVBQ", "PRSQ", "SCNQ", "SYNC"));
  EXPECT_EQ(deliver("FIND", ""s).status, errAEEventNotHandled);
  EXPECT_EQ(deliver("FNDN", ""s).status, errAEEventNotHandled);
  EXPECT_EQ(deliver("IMHR", ""s).status, errAEEventNotHandled);
  EXPECT_EQ(deliver("Rmci", ""s).status, errAEEventNotHandled);
  EXPECT_EQ(deliver("PRSQ", ""s).status, noErr);
  EXPECT_EQ(deliver("SYNC", ""s).status, noErr);
}

// Replaces the manager's removal: one call a line.
void noteRemoval(id, SEL, AEEventClass eventClass, AEEventID eventID) {
  logCall("remove " + characters(eventClass) + " " + characters(eventID));
}

TEST_F(AgentLifecycle, RemovalGoesInItsOwnOrder) {
  const ReplacedMethod removal([NSAppleEventManager class],
                               @selector(removeEventHandlerForEventClass:andEventID:),
                               asMethod(noteRemoval));
  [agent_ unregisterMellelEventHandlers];
  EXPECT_THAT(calls(), ElementsAre("remove mLeL Rmci", "remove mLeL FIND", "remove mLeL FNDN",
                                   "remove mLeL IMHR"));
}

TEST_F(AgentLifecycle, DestroyedAgentRemovesItsHandlersAndANewOneTakesItsPlace) {
  EXPECT_TRUE(endsWithItsRelease(agent_));
  EXPECT_THAT(installedEvents(), ElementsAre("LVBQ", "PRSQ", "SCNQ", "SYNC"));
  // What remains must point at a living object again.
  [agentClass_ initialize];
  EXPECT_EQ(installedEvents().size(), 8u);
}

TEST_F(AgentLifecycle, UnsupportedOperationsSayThatTheyAreAndReturnNothing) {
  EXPECT_EQ(str([agent_ citationStringForIDList:nil withStyle:nil atPosition:3]), "");
  EXPECT_EQ(str([agent_ bibliographyElementsForIDList:nil
                                            withStyle:nil
                                   returningCitations:YES
                                returningBibliography:YES]),
            "");
  EXPECT_THAT(log_->lines(),
              ElementsAre("KorvoMellelAgent.citationStringForIDList: currently unsupported.",
                          "KorvoMellelAgent.bibliographyElementsForIDList: currently "
                          "unsupported."));
}

TEST_F(AgentLifecycle, RetiredImportLeavesNoTrace) {
  EXPECT_EQ(deliver("SYNC", "anything", true).status, noErr);
  EXPECT_THAT(log_->lines(), IsEmpty());
  EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(AgentLifecycle, RetiredScanLeavesExactlyOneLogLine) {
  const Answer answer = deliver("Rmci", "anything", true);
  EXPECT_EQ(answer.status, noErr);
  EXPECT_FALSE(answer.directObject());
  EXPECT_THAT(log_->lines(),
              ElementsAre("KorvoMellelAgent.handleScanCitation:  Got a Rmci event - this is "
                          "obsolete and no longer supported."));
  EXPECT_THAT(calls(), IsEmpty());
}

}  // namespace
}  // namespace plugin_test
