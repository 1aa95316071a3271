#include "MacTerminalOperations.h"

#include "ServiceError.h"
#include "TerminalLaunchError.h"

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

using namespace Qt::StringLiterals;

namespace
{
void releaseObject(id object)
{
#if !__has_feature(objc_arc)
    [object release];
#else
    (void)object;
#endif
}

/// The bundle's information value for key when it is a string, else empty text: only a string can name
/// an app, so anything else counts as if the key were missing.
QString infoString(NSBundle* bundle, NSString* key)
{
    id value = [bundle objectForInfoDictionaryKey:key];
    if (![value isKindOfClass:[NSString class]])
        return QString();
    NSString* text = value;
    return QString::fromNSString(text);
}
} // namespace

std::optional<QString> MacApplicationLocator::applicationLocation(const QString& bundleIdentifier) const
{
    @autoreleasepool {
        NSURL* url =
            [[NSWorkspace sharedWorkspace] URLForApplicationWithBundleIdentifier:bundleIdentifier.toNSString()];
        if (url == nil || url.path == nil)
            return std::nullopt;
        return QString::fromNSString(url.path);
    }
}

std::optional<ApplicationInformation> MacApplicationLocator::applicationInformation(const QString& location) const
{
    @autoreleasepool {
        NSURL* url = [NSURL fileURLWithPath:location.toNSString() isDirectory:YES];
        NSBundle* bundle = [[NSBundle alloc] initWithURL:url];
        if (bundle == nil)
            return std::nullopt;
        ApplicationInformation information;
        information.displayName = infoString(bundle, @"CFBundleDisplayName");
        information.name = infoString(bundle, @"CFBundleName");
        releaseObject(bundle);
        return information;
    }
}

void macRunAppleScript(const QString& source)
{
    bool made = false;
    QString failure;
    @autoreleasepool {
        NSAppleScript* script = [[NSAppleScript alloc] initWithSource:source.toNSString()];
        if (script != nil) {
            made = true;
            NSDictionary* errorInfo = nil;
            [script executeAndReturnError:&errorInfo];
            // The dictionary's description carries NSAppleScriptErrorNumber, by which a refusal is recognised.
            if (errorInfo != nil)
                failure = QString::fromNSString([errorInfo description]);
            releaseObject(script);
        }
    }
    // Thrown outside the pool: an exception must not unwind through @autoreleasepool.
    if (!made)
        throw TerminalLaunchError::appleScriptFailed(u"Script initialisatie mislukt."_s);
    if (!failure.isNull())
        throw TerminalLaunchError::appleScriptFailed(failure);
}

void macOpenApplication(const QString& bundleIdentifier)
{
    QString startError;
    int status = 0;
    @autoreleasepool {
        NSTask* task = [[NSTask alloc] init];
        task.executableURL = [NSURL fileURLWithPath:@"/usr/bin/open"];
        task.arguments = @[ @"-b", bundleIdentifier.toNSString() ];
        NSError* error = nil;
        if ([task launchAndReturnError:&error]) {
            [task waitUntilExit];
            status = task.terminationStatus;
        } else {
            startError = error != nil ? QString::fromNSString(error.localizedDescription)
                                      : u"/usr/bin/open kon niet worden gestart."_s;
        }
        releaseObject(task);
    }
    if (!startError.isNull())
        throw PlatformError(startError);
    if (status != 0)
        throw TerminalLaunchError::launchFailed(bundleIdentifier);
}

void macSetClipboardText(const QString& text)
{
    @autoreleasepool {
        NSPasteboard* pasteboard = [NSPasteboard generalPasteboard];
        [pasteboard clearContents];
        [pasteboard setString:text.toNSString() forType:NSPasteboardTypeString];
    }
}

bool macOpenUri(const QUrl& uri)
{
    @autoreleasepool {
        NSURL* url = uri.toNSURL();
        return url != nil && [[NSWorkspace sharedWorkspace] openURL:url];
    }
}
