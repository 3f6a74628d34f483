#include "execution/CleanupError.h"

#include "base/StringCatalog.h"
#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

std::vector<CleanupError> oneOfEach() {
    std::vector<CleanupError> errors = {
        DockerDeletionError::deleteFailed({"/usr/local/bin/docker", "rmi", "-f", "abc"}, 125),
        DockerDeletionError::dockerNotAvailable(), DockerDeletionError::unsupportedOfflineTarget(),
        SimulatorDeletionError::deleteFailed("UDID", 164)};
    for (const RemovalFailureKind kind :
         {RemovalFailureKind::notFound, RemovalFailureKind::permission, RemovalFailureKind::readOnly,
          RemovalFailureKind::mounted, RemovalFailureKind::busy, RemovalFailureKind::changed,
          RemovalFailureKind::immutable, RemovalFailureKind::other})
        errors.push_back(
            RemovalFailure{FileURL("/a/victim"), kind, std::make_error_code(std::errc::io_error)});
    return errors;
}

TEST(CleanupError, IsComparedByValue) {
    EXPECT_EQ(DockerDeletionError::deleteFailed({"docker", "rmi"}, 1),
              DockerDeletionError::deleteFailed({"docker", "rmi"}, 1));
    EXPECT_NE(DockerDeletionError::deleteFailed({"docker", "rmi"}, 1),
              DockerDeletionError::deleteFailed({"docker", "rmi"}, 2));
    EXPECT_NE(DockerDeletionError::deleteFailed({"docker"}, 1),
              DockerDeletionError::deleteFailed({"podman"}, 1));
    EXPECT_NE(DockerDeletionError::dockerNotAvailable(), DockerDeletionError::unsupportedOfflineTarget());
    EXPECT_EQ(SimulatorDeletionError::deleteFailed("A", 1), SimulatorDeletionError::deleteFailed("A", 1));
    EXPECT_NE(SimulatorDeletionError::deleteFailed("A", 1), SimulatorDeletionError::deleteFailed("B", 1));
    const std::vector<CleanupError> errors = oneOfEach();
    for (std::size_t i = 0; i < errors.size(); ++i)
        for (std::size_t j = 0; j < errors.size(); ++j) EXPECT_EQ(errors[i] == errors[j], i == j);
}

TEST(CleanupError, HasASentenceOfItsOwnInBothLanguages) {
    for (const Language language : {Language::english, Language::portuguese}) {
        setCurrentLanguage(language);
        std::set<std::string> sentences;
        for (const CleanupError& error : oneOfEach()) {
            const std::string sentence = error.localizedDescription();
            EXPECT_THAT(sentence, Not(HasSubstr("error."))) << "a key without a text";
            EXPECT_THAT(sentence, Not(HasSubstr("%"))) << "a placeholder that was not filled";
            sentences.insert(sentence);
        }
        EXPECT_EQ(sentences.size(), oneOfEach().size());
    }
    setCurrentLanguage(Language::english);
}

TEST(CleanupError, NamesThePathTheCommandAndTheStatus) {
    const std::vector<CleanupError> errors = oneOfEach();
    EXPECT_THAT(errors[0].localizedDescription(), HasSubstr("/usr/local/bin/docker rmi -f abc"));
    EXPECT_THAT(errors[0].localizedDescription(), HasSubstr("125"));
    EXPECT_THAT(errors[3].localizedDescription(), HasSubstr("164"));
    for (std::size_t i = 4; i < errors.size(); ++i)
        EXPECT_THAT(errors[i].localizedDescription(), HasSubstr("/a/victim"));
    EXPECT_THAT(errors.back().localizedDescription(),
                HasSubstr(std::make_error_code(std::errc::io_error).message()));
}

TEST(CleanupError, ShowsAPathEscapedThatIsNoText) {
    const RemovalFailure failure{FileURL("/a/\xff\n"), RemovalFailureKind::permission, {}};
    EXPECT_THAT(failure.localizedDescription(), HasSubstr("/a/\\xFF\\x0A"));
}

} // namespace
} // namespace vesko
