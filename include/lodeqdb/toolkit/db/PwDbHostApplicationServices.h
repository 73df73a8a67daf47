// PwDbHostApplicationServices: what the process that uses the toolkit tells it about
// itself: the kind of host, the working database, how to find files, what counts as a URL,
// and the application identity that saved drawings carry.
//
//   PwDbHostApplicationServices* services = pwdbHostApplicationServices();
//   if (services && services->hostKind() == PwDbHostApplicationServices::kInkstoneHostKind) {...}
//
//   class MyServices : public PwDbHostApplicationServices { ... };
//   MyServices mine;
//   pwdbSetHostApplicationServices(&mine);    // or nullptr for none
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>

class PwDbDatabase;

/// Where the host keeps its layouts' state: which layout's block takes what is placed.
class PwDbHostLayoutService {
  public:
    virtual ~PwDbHostLayoutService();
    /// The block table record of the layout active in `database`, or with null in the
    /// working database of the process's host services. The base answers what the drawing
    /// says (PwDbDatabase::currentLayoutBlockId: the model space unless a client chose
    /// another); a host with layouts of its own installs services whose hostLayoutService
    /// answers otherwise. Null when there is no such drawing.
    virtual PwDbObjectId activeLayoutBlockId(PwDbDatabase* database) const;
};

class PwDbHostApplicationServices {
  public:
    /// The host kind of a process that runs the toolkit alone, without the drawing
    /// application.
    static constexpr int kInkstoneHostKind = 4;

    /// What a file is looked for as.
    enum FindFileHint {
        kDefault = 0,
        kXrefDrawing = 1,
        kRasterImage = 2,
        kUnderlay = 3,
    };

    PwDbHostApplicationServices();
    virtual ~PwDbHostApplicationServices();

    /// The kind of host; kInkstoneHostKind unless a host says otherwise.
    virtual int hostKind() const;

    /// The database in which the host currently works; may be null.
    PwDbDatabase* workingDatabase() const { return m_workingDatabase; }
    /// Makes `database` (may be null) the working database.
    virtual void setWorkingDatabase(PwDbDatabase* database);

    /// 1 when `text` is a URL (a scheme of ASCII letters, digits, '+', '-' or '.', starting
    /// with a letter and at least two long, followed by "://"); 0 otherwise, null included.
    virtual int isURL(const char16_t* text) const;

    /// The folder the host works from, where its support files lie ("Support\DgnSetups.ini"
    /// among them). Unless a host sets it: $LODEQDB_ROOT, else $XDG_CONFIG_HOME/lodeqdb, else
    /// $HOME/.config/lodeqdb, else empty.
    virtual wstring rootFolder() const;
    void setRootFolder(const wstring& folder) { m_rootFolder = folder; }

    /// The host's layout service; never null.
    virtual PwDbHostLayoutService* hostLayoutService();

    /// The file-finding hook: asked for `name` (as a drawing stores it) when it isn't found
    /// where the toolkit looks. On success `found` holds a full path of an existing file.
    /// The base implementation finds nothing (StatusFileNotFound).
    virtual Plotwright::ErrorStatus findFile(wstring& found, const char16_t* name,
                                             PwDbDatabase* database, FindFileHint hint);

    /// The application identity saved drawings carry: the owner's GUID in registry text form
    /// ("{E006715E-1EB4-4AE0-BC05-4BC5EFDDB41E}" style) and the creator's name.
    virtual wstring ownerGuid() const { return m_ownerGuid; }
    virtual wstring creatorName() const { return m_creatorName; }
    void setApplicationIdentity(const wstring& ownerGuid, const wstring& creatorName);

  private:
    PwDbDatabase* m_workingDatabase = nullptr;
    wstring m_rootFolder;
    wstring m_ownerGuid;
    wstring m_creatorName;
    PwDbHostLayoutService m_layoutService;
};

/// The process's host services: those installed by pwdbSetHostApplicationServices, at first a
/// default instance, so that a client works with no set-up. Null after a host installed none.
PwDbHostApplicationServices* pwdbHostApplicationServices();

/// Installs `services` (not owned; may be null) and gives back the ones it replaces.
PwDbHostApplicationServices* pwdbSetHostApplicationServices(PwDbHostApplicationServices* services);
