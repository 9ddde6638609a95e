<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="zh_CN">
<context>
    <name>texts</name>
    <message>
        <source>browser.download</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>browser.downloadEllipsis</source>
        <translation>Download...</translation>
    </message>
    <message>
        <source>browser.empty.hint</source>
        <translation>Mount a NAS from the main window to browse files.</translation>
    </message>
    <message>
        <source>browser.empty.title</source>
        <translation>No NAS mounted</translation>
    </message>
    <message>
        <source>browser.fileExists</source>
        <translation>File already exists</translation>
    </message>
    <message>
        <source>browser.fileExistsMessage</source>
        <translation>"%@" already exists in this location.</translation>
    </message>
    <message>
        <source>browser.open</source>
        <translation>Open</translation>
    </message>
    <message>
        <source>browser.openInFinder</source>
        <translation>Open in File Manager</translation>
    </message>
    <message>
        <source>browser.overwrite</source>
        <translation>Overwrite</translation>
    </message>
    <message>
        <source>browser.quickLook</source>
        <translation>Preview</translation>
    </message>
    <message>
        <source>browser.rename</source>
        <translation>Rename</translation>
    </message>
    <message>
        <source>browser.showInFinder</source>
        <translation>Show in File Manager</translation>
    </message>
    <message>
        <source>browser.skip</source>
        <translation>Skip</translation>
    </message>
    <message>
        <source>common.add</source>
        <translation>Add</translation>
    </message>
    <message>
        <source>common.cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>common.close</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>common.delete</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>common.save</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>filesystem.offline.empty</source>
        <translation>The NAS is disconnected. No files in this folder have been cached.</translation>
    </message>
    <message>
        <source>language.system</source>
        <translation>Same as System</translation>
    </message>
    <message>
        <source>main.about</source>
        <translation>About Harbrix</translation>
    </message>
    <message>
        <source>main.addNAS</source>
        <translation>Add NAS</translation>
    </message>
    <message>
        <source>main.addNASTooltip</source>
        <translation>Add a new NAS configuration</translation>
    </message>
    <message>
        <source>main.emptyDetailHint</source>
        <translation>Choose a configuration from the list on the left, or click the button above to add a new NAS.</translation>
    </message>
    <message>
        <source>main.mountedFoldersTitle</source>
        <translation>Mounted Folders</translation>
    </message>
    <message>
        <source>main.nasList</source>
        <translation>NAS List</translation>
    </message>
    <message>
        <source>main.noConfigs</source>
        <translation>No NAS configured yet</translation>
    </message>
    <message>
        <source>main.openInFinder</source>
        <translation>Open Folder</translation>
    </message>
    <message>
        <source>main.openSettings</source>
        <translation>Open Settings</translation>
    </message>
    <message>
        <source>main.selectOrAddNAS</source>
        <translation>Select or Add a NAS</translation>
    </message>
    <message>
        <source>menubar.about</source>
        <translation>About Harbrix</translation>
    </message>
    <message>
        <source>menubar.browseFiles</source>
        <translation>  Browse Files...</translation>
    </message>
    <message>
        <source>menubar.checkForUpdates</source>
        <translation>Check for Updates...</translation>
    </message>
    <message>
        <source>menubar.icon.accessibility</source>
        <translation>Harbrix Status</translation>
    </message>
    <message>
        <source>menubar.mountAll</source>
        <translation>Mount All Now</translation>
    </message>
    <message>
        <source>menubar.noConfigs</source>
        <translation>No NAS configured yet</translation>
    </message>
    <message>
        <source>menubar.openMainWindow</source>
        <translation>Open Main Window</translation>
    </message>
    <message>
        <source>menubar.openSettings</source>
        <translation>Settings...</translation>
    </message>
    <message>
        <source>menubar.quit</source>
        <translation>Quit Harbrix</translation>
    </message>
    <message>
        <source>menubar.recentFiles</source>
        <translation>Recent Files</translation>
    </message>
    <message>
        <source>menubar.unmountAll</source>
        <translation>Unmount All Now</translation>
    </message>
    <message>
        <source>nas.address</source>
        <translation>Address</translation>
    </message>
    <message>
        <source>nas.addressPlaceholder</source>
        <translation>e.g. 192.168.1.100</translation>
    </message>
    <message>
        <source>nas.auth</source>
        <translation>Authentication</translation>
    </message>
    <message>
        <source>nas.authMethod</source>
        <translation>Authentication method</translation>
    </message>
    <message>
        <source>nas.autoMount</source>
        <translation>Mount automatically</translation>
    </message>
    <message>
        <source>nas.basicInfo</source>
        <translation>General</translation>
    </message>
    <message>
        <source>nas.connectionFailed</source>
        <translation>Connection failed: %@</translation>
    </message>
    <message>
        <source>nas.connectionSuccess</source>
        <translation>Connected (latency %@ ms)</translation>
    </message>
    <message>
        <source>nas.customMountPoint</source>
        <translation>Custom mount point</translation>
    </message>
    <message>
        <source>nas.mount</source>
        <translation>Mount</translation>
    </message>
    <message>
        <source>nas.mountError</source>
        <translation>Mount Problem</translation>
    </message>
    <message>
        <source>nas.mountOptions</source>
        <translation>Mount Options</translation>
    </message>
    <message>
        <source>nas.mountPointExample1</source>
        <translation>Example: ~/HarbrixVolumes/MyNAS (recommended, created automatically)</translation>
    </message>
    <message>
        <source>nas.mountPointExample2</source>
        <translation>Example: /mnt/MyNAS (you have to create the folder yourself)</translation>
    </message>
    <message>
        <source>nas.mountPointHelp</source>
        <translation>Where the share is mounted. Leave empty to use ~/HarbrixVolumes/&lt;name&gt;. Note: folders outside your home folder, such as in /mnt/, have to be created by hand.</translation>
    </message>
    <message>
        <source>nas.mountPointPlaceholder</source>
        <translation>Leave empty for the default</translation>
    </message>
    <message>
        <source>nas.mounting</source>
        <translation>Mounting...</translation>
    </message>
    <message>
        <source>nas.name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>nas.namePlaceholder</source>
        <translation>e.g. Home NAS</translation>
    </message>
    <message>
        <source>nas.networkBinding</source>
        <translation>Network Binding</translation>
    </message>
    <message>
        <source>nas.networkBinding.currentIP</source>
        <translation>Current network: %@</translation>
    </message>
    <message>
        <source>nas.networkBinding.hint</source>
        <translation>This NAS is mounted automatically on matching networks only. You can always mount it by hand.</translation>
    </message>
    <message>
        <source>nas.networkBinding.ipRange</source>
        <translation>IP range (CIDR)</translation>
    </message>
    <message>
        <source>nas.networkBinding.ipRange.placeholder</source>
        <translation>e.g. 192.168.3.0/24</translation>
    </message>
    <message>
        <source>nas.networkBinding.preset.allNetworks</source>
        <translation>All Networks</translation>
    </message>
    <message>
        <source>nas.networkBinding.preset.currentIP</source>
        <translation>Current IP</translation>
    </message>
    <message>
        <source>nas.networkBinding.preset.currentNetwork</source>
        <translation>Current Network</translation>
    </message>
    <message>
        <source>nas.networkBinding.ssid.add</source>
        <translation>Wi-Fi name</translation>
    </message>
    <message>
        <source>nas.networkBinding.strategy</source>
        <translation>Bind by</translation>
    </message>
    <message>
        <source>nas.networkMismatch.confirm</source>
        <translation>Connect Anyway</translation>
    </message>
    <message>
        <source>nas.networkMismatch.message</source>
        <translation>This NAS is not bound to the current network, so the connection may fail. Try anyway?</translation>
    </message>
    <message>
        <source>nas.networkMismatch.title</source>
        <translation>Network Does Not Match</translation>
    </message>
    <message>
        <source>nas.openInFinder</source>
        <translation>Open</translation>
    </message>
    <message>
        <source>nas.password</source>
        <translation>Password</translation>
    </message>
    <message>
        <source>nas.passwordPlaceholder</source>
        <translation>Login password</translation>
    </message>
    <message>
        <source>nas.protocol</source>
        <translation>Protocol</translation>
    </message>
    <message>
        <source>nas.readOnly</source>
        <translation>Mount read-only</translation>
    </message>
    <message>
        <source>nas.sharePath</source>
        <translation>Share path</translation>
    </message>
    <message>
        <source>nas.sharePathPlaceholder</source>
        <translation>e.g. /shared/media</translation>
    </message>
    <message>
        <source>nas.smbVersion</source>
        <translation>SMB version</translation>
    </message>
    <message>
        <source>nas.testConnection</source>
        <translation>Test Connection</translation>
    </message>
    <message>
        <source>nas.testingConnection</source>
        <translation>Testing connection...</translation>
    </message>
    <message>
        <source>nas.unmount</source>
        <translation>Unmount</translation>
    </message>
    <message>
        <source>nas.username</source>
        <translation>User name</translation>
    </message>
    <message>
        <source>nas.usernamePlaceholder</source>
        <translation>Login name</translation>
    </message>
    <message>
        <source>network.status.allMismatch</source>
        <translation>Network mismatch</translation>
    </message>
    <message>
        <source>network.status.ipMismatch</source>
        <translation>IP mismatch</translation>
    </message>
    <message>
        <source>network.status.matched</source>
        <translation>Network matched</translation>
    </message>
    <message>
        <source>network.status.ssidMismatch</source>
        <translation>SSID mismatch</translation>
    </message>
    <message>
        <source>nfs.auth</source>
        <translation>NFS Authentication</translation>
    </message>
    <message>
        <source>nfs.error.emptySharePath</source>
        <translation>The NFS export path must not be empty</translation>
    </message>
    <message>
        <source>nfs.error.invalidArgument</source>
        <translation>mount_nfs was given an invalid argument. Check the address of the NFS server and the export path. Only NFSv4 is supported at present.</translation>
    </message>
    <message>
        <source>nfs.error.sudoRequired</source>
        <translation>Mounting NFS requires root privileges. Configure sudoers in a terminal so that mount_nfs runs without a password, or mount the share by hand and use a custom mount point.</translation>
    </message>
    <message>
        <source>nfs.mountOptions.detail</source>
        <translation>Fixed options: vers=4 (NFSv4), tcp (TCP transport), noresvport (unprivileged port); ro is added for read-only mounts.</translation>
    </message>
    <message>
        <source>nfs.mountOptions.title</source>
        <translation>NFSv4 Mount Options</translation>
    </message>
    <message>
        <source>nfs.noAuthNote</source>
        <translation>NFS needs no user name or password. Access is controlled by the exports configuration of the NFS server.</translation>
    </message>
    <message>
        <source>nfs.sharePath</source>
        <translation>NFS export path</translation>
    </message>
    <message>
        <source>nfs.sharePathPlaceholder</source>
        <translation>e.g. / or /volume1/shared</translation>
    </message>
    <message>
        <source>nfs.versionNote</source>
        <translation>Only NFSv4 is supported at present (over TCP, from an unprivileged port)</translation>
    </message>
    <message>
        <source>notification.action.retry</source>
        <translation>Try Again</translation>
    </message>
    <message>
        <source>notification.event.cacheCleanup</source>
        <translation>Cache cleanup</translation>
    </message>
    <message>
        <source>notification.event.mountFailure</source>
        <translation>Mount failed</translation>
    </message>
    <message>
        <source>notification.event.mountSuccess</source>
        <translation>Mount succeeded</translation>
    </message>
    <message>
        <source>notification.event.networkChange</source>
        <translation>Network change</translation>
    </message>
    <message>
        <source>notification.event.transferComplete</source>
        <translation>Transfer complete</translation>
    </message>
    <message>
        <source>notification.event.transferFailed</source>
        <translation>Transfer failed</translation>
    </message>
    <message>
        <source>notification.event.unmount</source>
        <translation>Unmount</translation>
    </message>
    <message>
        <source>notification.mount.failure.body</source>
        <translation>%1$@: %2$@</translation>
    </message>
    <message>
        <source>notification.mount.failure.title</source>
        <translation>NAS Connection Failed</translation>
    </message>
    <message>
        <source>notification.mount.success.body</source>
        <translation>%@ has been mounted</translation>
    </message>
    <message>
        <source>notification.mount.success.title</source>
        <translation>NAS Connected</translation>
    </message>
    <message>
        <source>notification.transfer.download.body</source>
        <translation>%@ has been downloaded</translation>
    </message>
    <message>
        <source>notification.transfer.download.title</source>
        <translation>Download Complete</translation>
    </message>
    <message>
        <source>notification.transfer.upload.body</source>
        <translation>%@ has been uploaded to the NAS</translation>
    </message>
    <message>
        <source>notification.transfer.upload.title</source>
        <translation>Upload Complete</translation>
    </message>
    <message>
        <source>notification.unmount.body</source>
        <translation>%@ has been unmounted</translation>
    </message>
    <message>
        <source>notification.unmount.title</source>
        <translation>NAS Disconnected</translation>
    </message>
    <message>
        <source>settings.advanced.connectionTimeout</source>
        <translation>Connection timeout</translation>
    </message>
    <message>
        <source>settings.advanced.retry</source>
        <translation>Retries</translation>
    </message>
    <message>
        <source>settings.advanced.retry.hint</source>
        <translation>What happens after a failed mount. The interval grows with each attempt (exponential back-off).</translation>
    </message>
    <message>
        <source>settings.advanced.retryCount</source>
        <translation>Number of retries</translation>
    </message>
    <message>
        <source>settings.advanced.retryInterval</source>
        <translation>Retry interval</translation>
    </message>
    <message>
        <source>settings.advanced.smb</source>
        <translation>SMB Protocol</translation>
    </message>
    <message>
        <source>settings.advanced.smbVersion</source>
        <translation>Default SMB version</translation>
    </message>
    <message>
        <source>settings.advanced.timeout</source>
        <translation>Timeouts</translation>
    </message>
    <message>
        <source>settings.advanced.timeout.hint</source>
        <translation>The longest time to wait for a connection to a NAS. A longer timeout helps on slow networks.</translation>
    </message>
    <message>
        <source>settings.cache.autoCleanup</source>
        <translation>Automatic Cleanup</translation>
    </message>
    <message>
        <source>settings.cache.autoCleanup.toggle</source>
        <translation>Clean up automatically</translation>
    </message>
    <message>
        <source>settings.cache.cleanupNow</source>
        <translation>Clean Up Now</translation>
    </message>
    <message>
        <source>settings.cache.clearAll</source>
        <translation>Clear Entire Cache</translation>
    </message>
    <message>
        <source>settings.cache.diskSpace</source>
        <translation>Free disk space</translation>
    </message>
    <message>
        <source>settings.cache.entryCount</source>
        <translation>Cached files</translation>
    </message>
    <message>
        <source>settings.cache.hitRate</source>
        <translation>Hit rate</translation>
    </message>
    <message>
        <source>settings.cache.lastCleanup</source>
        <translation>Last cleanup</translation>
    </message>
    <message>
        <source>settings.cache.lastRemoved</source>
        <translation>Files removed</translation>
    </message>
    <message>
        <source>settings.cache.maxSize</source>
        <translation>Maximum Cache Size</translation>
    </message>
    <message>
        <source>settings.cache.totalSize</source>
        <translation>Space used</translation>
    </message>
    <message>
        <source>settings.cache.usage</source>
        <translation>Cache Usage</translation>
    </message>
    <message>
        <source>settings.keepAlive.enabled</source>
        <translation>Keep connections alive</translation>
    </message>
    <message>
        <source>settings.keepAlive.hint</source>
        <translation>Harbrix regularly checks the connection to mounted NAS. If one is lost while you are still on your home network, Harbrix tries to mount it again.</translation>
    </message>
    <message>
        <source>settings.keepAlive.interval</source>
        <translation>Check every</translation>
    </message>
    <message>
        <source>settings.keepAlive.title</source>
        <translation>Keep-Alive</translation>
    </message>
    <message>
        <source>settings.language.app</source>
        <translation>Language</translation>
    </message>
    <message>
        <source>settings.language.disclaimer</source>
        <translation>Some translations may be incomplete; missing texts appear in English. We keep improving them and apologize for any inconvenience.</translation>
    </message>
    <message>
        <source>settings.language.restartHint</source>
        <translation>After changing the language, restart the application so that every window uses it.</translation>
    </message>
    <message>
        <source>settings.language.select</source>
        <translation>Choose language</translation>
    </message>
    <message>
        <source>settings.language.supported</source>
        <translation>About Translations</translation>
    </message>
    <message>
        <source>settings.launch.atLogin</source>
        <translation>Start at login</translation>
    </message>
    <message>
        <source>settings.launch.atLogin.hint</source>
        <translation>Harbrix starts when you log in and runs in the system tray.</translation>
    </message>
    <message>
        <source>settings.launch.autoMount</source>
        <translation>Automatic Mounting</translation>
    </message>
    <message>
        <source>settings.launch.autoMount.hint</source>
        <translation>When Harbrix starts, it mounts every enabled NAS whose network matches.</translation>
    </message>
    <message>
        <source>settings.launch.autoMount.toggle</source>
        <translation>Mount at startup</translation>
    </message>
    <message>
        <source>settings.launch.behavior</source>
        <translation>Startup</translation>
    </message>
    <message>
        <source>settings.launch.stability.binding</source>
        <translation>Network binding: automatic mounts only on matching home networks</translation>
    </message>
    <message>
        <source>settings.launch.stability.network</source>
        <translation>Network debouncing: waits 2 seconds after a network change before mounting</translation>
    </message>
    <message>
        <source>settings.launch.stability.retry</source>
        <translation>Exponential back-off: retries after 10s→30s→60s→300s</translation>
    </message>
    <message>
        <source>settings.launch.stability.title</source>
        <translation>How Connections Stay Stable</translation>
    </message>
    <message>
        <source>settings.launch.stability.wake</source>
        <translation>Sleep and wake: mounts again after the system wakes up</translation>
    </message>
    <message>
        <source>settings.logging.actions</source>
        <translation>Actions</translation>
    </message>
    <message>
        <source>settings.logging.clear</source>
        <translation>Clear Logs</translation>
    </message>
    <message>
        <source>settings.logging.debug</source>
        <translation>Debug mode</translation>
    </message>
    <message>
        <source>settings.logging.debug.hint</source>
        <translation>Records detailed debugging information; this may affect performance.</translation>
    </message>
    <message>
        <source>settings.logging.export</source>
        <translation>Export Logs</translation>
    </message>
    <message>
        <source>settings.logging.file</source>
        <translation>File Output</translation>
    </message>
    <message>
        <source>settings.logging.fileSize</source>
        <translation>Size of log files</translation>
    </message>
    <message>
        <source>settings.logging.fileToggle</source>
        <translation>Write to a log file</translation>
    </message>
    <message>
        <source>settings.logging.level</source>
        <translation>Log Level</translation>
    </message>
    <message>
        <source>settings.logging.minLevel</source>
        <translation>Minimum level</translation>
    </message>
    <message>
        <source>settings.logging.mode</source>
        <translation>Log Mode</translation>
    </message>
    <message>
        <source>settings.notification.enableAll</source>
        <translation>Enable all notifications</translation>
    </message>
    <message>
        <source>settings.notification.events</source>
        <translation>Events</translation>
    </message>
    <message>
        <source>settings.notification.global</source>
        <translation>General</translation>
    </message>
    <message>
        <source>settings.notification.reset</source>
        <translation>Restore Defaults</translation>
    </message>
    <message>
        <source>settings.notification.systemHint</source>
        <translation>Make sure that the system settings allow Harbrix to send notifications.</translation>
    </message>
    <message>
        <source>settings.tab.advanced</source>
        <translation>Advanced</translation>
    </message>
    <message>
        <source>settings.tab.cache</source>
        <translation>Cache</translation>
    </message>
    <message>
        <source>settings.tab.language</source>
        <translation>Language</translation>
    </message>
    <message>
        <source>settings.tab.launch</source>
        <translation>Startup</translation>
    </message>
    <message>
        <source>settings.tab.logging</source>
        <translation>Logs</translation>
    </message>
    <message>
        <source>settings.tab.notifications</source>
        <translation>Notifications</translation>
    </message>
    <message>
        <source>status.failed</source>
        <translation>Failed</translation>
    </message>
    <message>
        <source>status.failed.a11y</source>
        <translation>Mount failed</translation>
    </message>
    <message>
        <source>status.idle</source>
        <translation>Idle</translation>
    </message>
    <message>
        <source>status.mounted</source>
        <translation>Mounted</translation>
    </message>
    <message>
        <source>status.mounting</source>
        <translation>Mounting...</translation>
    </message>
    <message>
        <source>status.offline</source>
        <translation>Offline</translation>
    </message>
    <message>
        <source>status.unmounting</source>
        <translation>Unmounting...</translation>
    </message>
    <message>
        <source>status.unmounting.a11y</source>
        <translation>Unmounting</translation>
    </message>
    <message numerus="yes">
        <source>transfer.activeCount</source>
        <translation>
            <numerusform>%lld active</numerusform>
            <numerusform>%lld active</numerusform>
        </translation>
    </message>
    <message>
        <source>transfer.cancelled</source>
        <translation>Cancelled</translation>
    </message>
    <message>
        <source>transfer.clearCompleted</source>
        <translation>Clear completed transfers</translation>
    </message>
    <message>
        <source>transfer.done</source>
        <translation>Done</translation>
    </message>
    <message>
        <source>transfer.eta</source>
        <translation>ETA: %@</translation>
    </message>
    <message>
        <source>transfer.failed</source>
        <translation>Failed</translation>
    </message>
    <message>
        <source>transfer.noTransfers</source>
        <translation>No transfers</translation>
    </message>
    <message>
        <source>transfer.paused</source>
        <translation>Paused</translation>
    </message>
    <message>
        <source>transfer.queued</source>
        <translation>Queued</translation>
    </message>
    <message>
        <source>transfer.stop.confirm</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>transfer.stop.message</source>
        <translation>What has not been copied yet is left out.</translation>
    </message>
    <message>
        <source>transfer.stop.title</source>
        <translation>Stop transfers?</translation>
    </message>
    <message>
        <source>transfer.title</source>
        <translation>Transfers</translation>
    </message>
    <message>
        <source>window.about.title</source>
        <translation>About Harbrix</translation>
    </message>
    <message>
        <source>window.browser.title</source>
        <translation>File Browser</translation>
    </message>
    <message>
        <source>window.main.title</source>
        <translation>Harbrix</translation>
    </message>
    <message>
        <source>window.settings.title</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>Loading...</source>
        <translation>Loading...</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Size</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Modified</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Open</translation>
    </message>
    <message>
        <source>Show in Finder</source>
        <translation>Show in File Manager</translation>
    </message>
    <message>
        <source>Empty Folder</source>
        <translation>Empty Folder</translation>
    </message>
    <message>
        <source>Drag files here to upload</source>
        <translation>Drag files here to upload</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>main.discardChanges</source>
        <translation>Discard Changes</translation>
    </message>
    <message>
        <source>main.edited</source>
        <translation>Edited</translation>
    </message>
    <message>
        <source>main.notSaved</source>
        <translation>Changes cannot be saved: %@. They are lost when Harbrix quits.</translation>
    </message>
    <message>
        <source>notification.settingsDamaged.body</source>
        <translation>The file is kept as %@</translation>
    </message>
    <message>
        <source>notification.settingsDamaged.title</source>
        <translation>The settings were damaged</translation>
    </message>
    <message>
        <source>官网</source>
        <translation>Website</translation>
    </message>
    <message>
        <source>反馈</source>
        <translation>Feedback</translation>
    </message>
    <message>
        <source>文档</source>
        <translation>Documentation</translation>
    </message>
</context>
</TS>
