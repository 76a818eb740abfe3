#include "localization/DestinationMessages.h"
#include "localization/Localization.h"
#include "platform/Text.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <string>

namespace tessaly::Localization {
namespace {

using enum AppLanguage;

using testing::HasSubstr;
using testing::Not;

std::string messageOf(int errorNumber, AppLanguage language = english) {
  return destinationMessage(DestinationError(errorNumber, "/photos/Tessaly Results"), language);
}

TEST(DestinationMessages, NameTheFolderAndTheReason) {
  const std::pair<int, const char*> rows[] = {
      {ENOSPC, "no space left"},     {EDQUOT, "disk quota"},        {EACCES, "permission denied"},
      {EPERM, "permission denied"},  {EROFS, "read-only"},          {ENAMETOOLONG, "too long"},
      {EINVAL, "not allowed there"}, {EILSEQ, "not allowed there"}, {EFBIG, "too large"},
      {EEXIST, "already exists"},
  };
  for (const auto& [number, words] : rows) {
    EXPECT_THAT(messageOf(number), HasSubstr("“/photos/Tessaly Results”: ")) << words;
    EXPECT_THAT(messageOf(number), HasSubstr(words));
    EXPECT_TRUE(hasDestinationMessage(number)) << words;
    EXPECT_THAT(messageOf(number, french), Not(HasSubstr(words)));
    EXPECT_THAT(messageOf(number, chinese), Not(HasSubstr(words)));
  }
}

TEST(DestinationMessages, AreNeverAboutThePhotograph) {
  for (const int number : {ENOSPC, EACCES, EROFS, ENAMETOOLONG, EEXIST, EIO}) {
    EXPECT_THAT(messageOf(number), Not(HasSubstr(std::string(supportEmail))));
    EXPECT_THAT(messageOf(number), Not(HasSubstr("open this file")));
  }
}

TEST(DestinationMessages, SpeakTheThreeLanguages) {
  EXPECT_EQ(messageOf(ENOSPC),
            "Tessaly couldn't write to the folder “/photos/Tessaly Results”: no space left on its disk. Free some "
            "space or choose another folder, then retry.");
  EXPECT_EQ(messageOf(ENOSPC, chinese),
            "Tessaly 无法写入文件夹“/photos/Tessaly Results”：磁盘空间不足。请释放空间或选择其他文件夹，然后重试。");
  EXPECT_EQ(messageOf(ENOSPC, french),
            "Tessaly n’a pas pu écrire dans le dossier « /photos/Tessaly Results » : il n’y a plus "
            "d’espace sur son disque. Libérez de l’espace ou choisissez un autre dossier, puis réessayez.");
}

TEST(DestinationMessages, TakeTheSystemsWordsForOtherReasons) {
  EXPECT_FALSE(hasDestinationMessage(EIO));
  EXPECT_EQ(messageOf(EIO), "Tessaly couldn't write to the folder “/photos/Tessaly Results”: Input/output error");
  EXPECT_THAT(messageOf(EIO, french), HasSubstr(" : Erreur de lecture ou d’écriture"));
}

TEST(DestinationMessages, NameARelativeFolderInFull) {
  const std::string folder = std::filesystem::current_path();
  EXPECT_THAT(destinationMessage(DestinationError(EROFS, "."), english), HasSubstr("“" + folder + "”"));
  EXPECT_THAT(destinationMessage(DestinationError(EROFS, "out/"), english), HasSubstr("“" + folder + "/out”"));
}

// The English column must be what the C library says, letter for letter, or the words are not found.
TEST(SystemWords, OfWhatFilesMeetAreTranslated) {
  for (const int number :
       {EPERM,        ENOENT,      EIO,       ENXIO,     EBADF,    EAGAIN, ENOMEM,     EACCES,       EBUSY,
        EEXIST,       EXDEV,       ENODEV,    ENOTDIR,   EISDIR,   EINVAL, ENFILE,     EMFILE,       ETXTBSY,
        EFBIG,        ENOSPC,      ESPIPE,    EROFS,     EMLINK,   EPIPE,  ENOLCK,     ENAMETOOLONG, ENOSYS,
        ENOTEMPTY,    ELOOP,       ENODATA,   ENOLINK,   EPROTO,   EILSEQ, EOPNOTSUPP, EOVERFLOW,    ENETDOWN,
        ENETUNREACH,  ECONNRESET,  ENOTCONN,  ETIMEDOUT, ESTALE,   EDQUOT, EHOSTDOWN,  ECONNREFUSED, EUCLEAN,
        EHOSTUNREACH, EMEDIUMTYPE, EREMOTEIO, ENOMEDIUM, ECANCELED}) {
    const std::string words = systemMessage(number);
    EXPECT_EQ(text(words, english), words);
    EXPECT_NE(text(words, french), words);
    EXPECT_NE(text(words, chinese), words);
  }
}

TEST(SystemWords, ThatAreRareStayAsTheCLibraryWordsThem) {
  EXPECT_EQ(text(systemMessage(ENOMSG), french), "No message of desired type");
}

}  // namespace
}  // namespace tessaly::Localization
