// A check for clang-tidy 14 to 20 that finds nothing: it keeps the others from walking through the system's headers,
// where most of their time goes and what they find is left out of the result anyway. tools/tidy compiles and loads it.
// Later versions of clang-tidy do the same by themselves.
#include <clang-tidy/ClangTidyCheck.h>
#include <clang-tidy/ClangTidyModule.h>
#include <clang-tidy/ClangTidyModuleRegistry.h>
#include <clang/AST/ASTContext.h>
#include <clang/ASTMatchers/ASTMatchFinder.h>
#include <clang/Basic/SourceManager.h>

#include <vector>

namespace {

class OwnCode : public clang::tidy::ClangTidyCheck {
public:
    using ClangTidyCheck::ClangTidyCheck;

    void registerMatchers(clang::ast_matchers::MatchFinder* finder) override {
        finder->addMatcher(clang::ast_matchers::translationUnitDecl().bind("unit"), this);
    }

    // The unit is the first node of all, and what lies in it is visited after that: in the scope set here.
    void check(const clang::ast_matchers::MatchFinder::MatchResult& found) override {
        std::vector<clang::Decl*> own;
        for (clang::Decl* declaration : found.Nodes.getNodeAs<clang::TranslationUnitDecl>("unit")->decls()) {
            const clang::SourceLocation place = found.SourceManager->getExpansionLoc(declaration->getLocation());
            if (place.isValid() && !found.SourceManager->isInSystemHeader(place)) own.push_back(declaration);
        }
        found.Context->setTraversalScope(own);
    }
};

class OwnCodeModule : public clang::tidy::ClangTidyModule {
    void addCheckFactories(clang::tidy::ClangTidyCheckFactories& factories) override {
        factories.registerCheck<OwnCode>("zephyr-own-code");
    }
};

const clang::tidy::ClangTidyModuleRegistry::Add<OwnCodeModule> kRegistered("zephyr", "");

}  // namespace
