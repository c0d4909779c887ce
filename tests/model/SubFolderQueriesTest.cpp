#include "DiscViewParts.h"
#include "ZMModel/CDiscData.h"
#include "lists/MediaTypes.h"
#include "tests/model/ModelTest.h"

namespace zm::test {

using testing::Contains;
using testing::HasSubstr;

/** The two queries that no page sends, asked of the main view's objects without a screen. */
class SubFolderQueries : public ModelTest {
protected:
    static std::string foldersOf(int fileType, int folder) {
        return "select folderid,parentid,foldername from folders where ftype = " + std::to_string(fileType) +
               " and parentid = " + std::to_string(folder);
    }

    Oro::ZMCAR::ViewUI view;
    CDiscData data;
    DiscViewParts parts{view, "zmdisc", data};
    Folders& folders = parts.folders;
};

TEST_F(SubFolderQueries, OnlyTheFirstOneOrders) {
    for (const MediaType& type : MediaTypes()) {
        parts.state.m_nCurPlayType = type.type;
        folders.OnQueryFolderList(5);
        EXPECT_EQ(parts.lists.m_szListSql, foldersOf(type.fileType, 5) + " ORDER BY folderid;");
        folders.OnQueryFolderList2(5);
        EXPECT_EQ(parts.lists.m_szListSql, foldersOf(type.fileType, 5) + ";");
    }
}

TEST_F(SubFolderQueries, TheRootIsAListOfFoldersTheOthersShowContents) {
    for (const MediaType& type : MediaTypes()) {
        parts.state.m_nCurPlayType = type.type;
        folders.OnQueryFolderList(5);
        EXPECT_EQ(parts.lists.m_nCurListFrom, type.inFolderFrom);
        folders.OnQueryFolderList(1);
        EXPECT_EQ(parts.lists.m_nCurListFrom, type.foldersFrom);
    }
}

TEST_F(SubFolderQueries, OtherTypesKeepTheSourceAndAskForMusic) {
    parts.state.m_nCurPlayType = PLAY_TYPE_CD;
    parts.lists.m_nCurListFrom = LIST_FROM_VIDEO_IN_FOLDER;
    folders.OnQueryFolderList(5);
    EXPECT_EQ(parts.lists.m_nCurListFrom, LIST_FROM_VIDEO_IN_FOLDER);
    EXPECT_EQ(parts.lists.m_szListSql, foldersOf(1, 5) + " ORDER BY folderid;");
}

TEST_F(SubFolderQueries, BothLogUnderTheFirstOnesName) {
    parts.state.m_nCurPlayType = PLAY_TYPE_VIDEO;
    const std::string files =
        "SELECT fid,folderid,ftype,filename from files WHERE ftype = 2 and folderid = 5 "
        "AND filename <> '' ORDER BY fid;";
    folders.OnQueryFolderList(5);
    auto lines = logged();
    EXPECT_THAT(lines, Contains(HasSubstr("OnQueryFolderList]-[OnQueryFolderList]--nFolderId=5")));
    EXPECT_THAT(lines, Contains(HasSubstr("OnQueryFolderList]-[OnQueryFolderList]--SqlSecond:" + files)));
    folders.OnQueryFolderList2(5);
    lines = logged();
    EXPECT_THAT(lines, Contains(HasSubstr("OnQueryFolderList2]-[OnQueryFolderList]--nFolderId=5")));
    EXPECT_THAT(lines, Contains(HasSubstr("OnQueryFolderList2]-[OnQueryFolderList]--SqlSecond:" + files)));
}

} // namespace zm::test
