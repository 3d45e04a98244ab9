// The agent as an object: how wide its variables are, and what its end does to the class.

#import "Support/AgentTest.h"

namespace plugin_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Replaces the manager's removal of handlers: one call a line.
void noteRemovalOfID(id, SEL, AEEventClass, AEEventID eventID) {
  logCall("remove " + characters(eventID));
}

class AgentInstance : public AgentTest {
 protected:
  AgentInstance()
      : removal_([NSAppleEventManager class],
                 @selector(removeEventHandlerForEventClass:andEventID:),
                 asMethod(noteRemovalOfID)) {}

 private:
  ReplacedMethod removal_;
};

TEST_F(AgentInstance, DocumentIDHasSixtyFourBits) {
  setDocumentID(0xFEDCBA9876543210);
  EXPECT_EQ(documentID(), 0xFEDCBA9876543210u);
  EXPECT_EQ(std::string(ivar_getTypeEncoding(class_getInstanceVariable(agentClass_, "documentID"))),
            @encode(uint64_t));
}

TEST_F(AgentInstance, EndOfTheOneInstanceRemovesItsHandlersAndMakesRoomForAnother) {
  [agent_ release];
  EXPECT_THAT(calls(), ElementsAre("remove Rmci", "remove FIND", "remove FNDN", "remove IMHR"));
  EXPECT_NE([agentClass_ defaultInstance], nil);
}

TEST_F(AgentInstance, EndOfAnotherWhileThereIsAnInstanceRemovesTheHandlersAndForgetsTheInstance) {
  KorvoMellelAgent *another = [[agentClass_ alloc] init];
  [another release];
  EXPECT_THAT(calls(), ElementsAre("remove Rmci", "remove FIND", "remove FNDN", "remove IMHR"));
  ASSERT_NE([agentClass_ defaultInstance], agent_);
  [[agentClass_ defaultInstance] release];
  calls().clear();
  [agent_ release];
}

TEST_F(AgentInstance, EndOfAnotherWhileThereIsNoInstanceLeavesTheHandlersAlone) {
  KorvoMellelAgent *another = [[agentClass_ alloc] init];
  [agent_ release];
  calls().clear();
  [another release];
  EXPECT_THAT(calls(), IsEmpty());
}

}  // namespace
}  // namespace plugin_test
