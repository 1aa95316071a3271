// Raw text editing and saving.
//
// Which version of the config a save writes:
//
//   tab         rawTextDirty  rawEditorDirty  writes
//   structured  any           any             the serialized document
//   raw         true          any             the raw text as typed (refused on parse errors)
//   raw         false         false           the raw text (nothing pending: the file's own text)
//   raw         false         true            the serialized document (only structured edits pending)
//   knownHosts  any           any             the serialized known_hosts document
//
// Before any of them, a save is refused when the file could not be read at the last load (then only
// text typed in the raw editor may replace it), or when another program changed the file since it was
// loaded and the user has not chosen to keep their own version (SSHConfigViewModelFileGuard.cpp).

#include "SSHConfigViewModel.h"

#include "ServiceError.h"

using namespace Qt::StringLiterals;

void SSHConfigViewModel::saveCurrentTab()
{
    switch (m_activeEditorTab) {
    case EditorTab::structured:
        saveConfig();
        return;
    case EditorTab::raw:
        if (m_rawTextDirty || !m_rawEditorDirty)
            saveRawText();
        else
            saveConfig();
        return;
    case EditorTab::knownHosts:
        saveKnownHosts();
        return;
    }
}

void SSHConfigViewModel::parseRawText()
{
    const ConfigUndoState before = captureConfigState();
    SSHConfigParseResult parsed = m_parser.parse(m_rawText);
    setParseErrors(parsed.errors);
    replaceDocument(parsed.document);
    ensureValidHostSelection();
    setRawEditorDirty(true);
    recordConfigStep(u"Raw tekst parsen"_s, u"Raw tekst geparset"_s, before);
    if (!m_parseErrors.isEmpty())
        setStatusMessage(u"Raw editor: "_s + QString::number(m_parseErrors.size()) + u" parsefout(en)."_s);
    else
        setStatusMessage(u"Raw editor: parse gelukt."_s);
}

void SSHConfigViewModel::saveRawText()
{
    if (refuseConfigSave(m_rawTextDirty))
        return;
    SSHConfigParseResult parsed = m_parser.parse(m_rawText);
    setParseErrors(parsed.errors);
    if (!m_parseErrors.isEmpty()) {
        setStatusMessage(u"Niet opgeslagen door parsefouten."_s);
        return;
    }
    replaceDocument(parsed.document);
    ensureValidHostSelection();
    const QString message = writeConfigText(m_rawText, u"Raw config opgeslagen naar "_s);
    setStatusMessage(message);
}

void SSHConfigViewModel::saveConfig()
{
    if (refuseConfigSave(false))
        return;
    setRawText(m_parser.serialize(m_document));
    const QString message = writeConfigText(m_rawText, u"Opgeslagen naar "_s);
    setStatusMessage(message);
}

// Writes the config and gives the status sentence; on success the config counts as saved. Parse
// errors are cleared only on the structured path: the raw path has just parsed the text without any.
QString SSHConfigViewModel::writeConfigText(const QString& text, const QString& prefixOnSuccess)
{
    std::optional<QString> backup;
    try {
        backup = m_fileService->writeConfig(text);
    } catch (const ServiceError& error) {
        return u"Opslaan mislukt: "_s + error.description();
    }
    rememberSavedFile(SSHFile::config, text);
    m_configHistory.markSaved();
    m_rawTextBeforeTyping = m_rawText;
    setParseErrors({});
    setRawEditorDirty(false);
    setRawTextDirty(false);
    const QString path = m_fileService->configURL();
    if (!backup)
        return prefixOnSuccess + path + u"."_s;
    setLastBackupPath(*backup);
    return prefixOnSuccess + path + u" met backup."_s;
}

void SSHConfigViewModel::saveKnownHosts()
{
    if (refuseKnownHostsSave())
        return;
    renumberKnownHostEntries();
    const QString text = m_knownHostsService.serialize(m_knownHostsDocument);
    std::optional<QString> backup;
    try {
        backup = m_fileService->writeKnownHosts(text);
    } catch (const ServiceError& error) {
        setStatusMessage(u"known_hosts opslaan mislukt: "_s + error.description());
        return;
    }
    rememberSavedFile(SSHFile::knownHosts, text);
    m_knownHostsHistory.markSaved();
    setKnownHostsDirty(false);
    const QString path = m_fileService->knownHostsURL();
    if (backup) {
        setLastBackupPath(*backup);
        setStatusMessage(u"known_hosts opgeslagen naar "_s + path + u" met backup."_s);
    } else {
        setStatusMessage(u"known_hosts opgeslagen naar "_s + path + u"."_s);
    }
}

void SSHConfigViewModel::refreshRawTextFromDocument()
{
    if (m_rawTextDirty)
        return;
    setRawText(m_parser.serialize(m_document));
}
