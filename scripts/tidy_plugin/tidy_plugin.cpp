// What clang-tidy lacks, loaded into it by scripts/tidy. It keeps the checks off the declarations
// of system headers: findings there are never shown, but walking them takes nine tenths of a
// check's time where a source includes the standard library or the test framework. And it tells
// which files the result depends on.
#include <clang/AST/ASTConsumer.h>
#include <clang/AST/ASTContext.h>
#include <clang/Basic/SourceManager.h>
#include <clang/Frontend/CompilerInstance.h>
#include <clang/Frontend/FrontendAction.h>
#include <clang/Frontend/FrontendPluginRegistry.h>
#include <clang/Frontend/Utils.h>
#include <cstdlib>
#include <llvm/Support/raw_ostream.h>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

namespace {

// Every file that is opened or asked for, system headers too.
class AllFiles : public clang::DependencyCollector {
 public:
  bool needSystemDependencies() override { return true; }
  bool sawDependency(llvm::StringRef /*name*/, bool /*fromModule*/, bool /*isSystem*/,
                     bool /*isModuleFile*/, bool /*isMissing*/) override {
    return true;
  }
};

// Writes the names of the files, one a line, to the file that the environment names.
void writeNames(const clang::DependencyCollector& files) {
  const char* path = std::getenv("TIDY_DEPENDENCIES");
  if (path == nullptr) {
    return;
  }
  std::error_code error;
  llvm::raw_fd_ostream out(path, error);
  for (const std::string& name : files.getDependencies()) {
    out << name << '\n';
  }
}

std::vector<clang::Decl*> ownDeclarations(const clang::ASTContext& context) {
  const clang::SourceManager& sources = context.getSourceManager();
  std::vector<clang::Decl*> own;
  for (clang::Decl* declaration : context.getTranslationUnitDecl()->decls()) {
    const clang::SourceLocation place = sources.getExpansionLoc(declaration->getLocation());
    if (place.isValid() && !sources.isInSystemHeader(place)) {
      own.push_back(declaration);
    }
  }
  return own;
}

class Consumer : public clang::ASTConsumer {
 public:
  explicit Consumer(clang::Preprocessor& preprocessor) {
    files_.attachToPreprocessor(preprocessor);
  }

  void HandleTranslationUnit(clang::ASTContext& context) override {
    context.setTraversalScope(ownDeclarations(context));
    writeNames(files_);
  }

 private:
  AllFiles files_;
};

class Action : public clang::PluginASTAction {
  std::unique_ptr<clang::ASTConsumer> CreateASTConsumer(clang::CompilerInstance& compiler,
                                                        llvm::StringRef /*source*/) override {
    return std::make_unique<Consumer>(compiler.getPreprocessor());
  }
  bool ParseArgs(const clang::CompilerInstance& /*compiler*/,
                 const std::vector<std::string>& /*arguments*/) override {
    return true;
  }
  ActionType getActionType() override { return AddBeforeMainAction; }
};

const clang::FrontendPluginRegistry::Add<Action> registered("tidy-plugin",
                                                            "own declarations, dependencies");

}  // namespace
