<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it" sourcelanguage="zh_CN">
<context>
    <name>texts</name>
    <message>
        <source>browser.download</source>
        <translation>Scarica</translation>
    </message>
    <message>
        <source>browser.downloadEllipsis</source>
        <translation>Scarica...</translation>
    </message>
    <message>
        <source>browser.empty.hint</source>
        <translation>Per esplorare i file, montare un NAS dalla finestra principale.</translation>
    </message>
    <message>
        <source>browser.empty.title</source>
        <translation>Nessun NAS montato</translation>
    </message>
    <message>
        <source>browser.fileExists</source>
        <translation>Il file esiste già</translation>
    </message>
    <message>
        <source>browser.fileExistsMessage</source>
        <translation>«%@» esiste già in questa posizione.</translation>
    </message>
    <message>
        <source>browser.open</source>
        <translation>Apri</translation>
    </message>
    <message>
        <source>browser.openInFinder</source>
        <translation>Apri nel gestore file</translation>
    </message>
    <message>
        <source>browser.overwrite</source>
        <translation>Sovrascrivi</translation>
    </message>
    <message>
        <source>browser.quickLook</source>
        <translation>Anteprima</translation>
    </message>
    <message>
        <source>browser.rename</source>
        <translation>Rinomina</translation>
    </message>
    <message>
        <source>browser.showInFinder</source>
        <translation>Mostra nel gestore file</translation>
    </message>
    <message>
        <source>browser.skip</source>
        <translation>Salta</translation>
    </message>
    <message>
        <source>common.add</source>
        <translation>Aggiungi</translation>
    </message>
    <message>
        <source>common.cancel</source>
        <translation>Annulla</translation>
    </message>
    <message>
        <source>common.close</source>
        <translation>Chiudi</translation>
    </message>
    <message>
        <source>common.delete</source>
        <translation>Elimina</translation>
    </message>
    <message>
        <source>common.save</source>
        <translation>Salva</translation>
    </message>
    <message>
        <source>filesystem.offline.empty</source>
        <translation>Il NAS è disconnesso. Nessun file di questa cartella è nella cache.</translation>
    </message>
    <message>
        <source>language.system</source>
        <translation>Lingua di sistema</translation>
    </message>
    <message>
        <source>main.about</source>
        <translation>Informazioni su Harbrix</translation>
    </message>
    <message>
        <source>main.addNAS</source>
        <translation>Aggiungi NAS</translation>
    </message>
    <message>
        <source>main.addNASTooltip</source>
        <translation>Aggiunge una nuova configurazione NAS</translation>
    </message>
    <message>
        <source>main.emptyDetailHint</source>
        <translation>Scegliere una configurazione dall’elenco a sinistra oppure fare clic sul pulsante in alto per aggiungere un nuovo NAS.</translation>
    </message>
    <message>
        <source>main.mountedFoldersTitle</source>
        <translation>Cartelle montate</translation>
    </message>
    <message>
        <source>main.nasList</source>
        <translation>Elenco NAS</translation>
    </message>
    <message>
        <source>main.noConfigs</source>
        <translation>Nessun NAS configurato</translation>
    </message>
    <message>
        <source>main.openInFinder</source>
        <translation>Apri cartella</translation>
    </message>
    <message>
        <source>main.openSettings</source>
        <translation>Apri le impostazioni</translation>
    </message>
    <message>
        <source>main.selectOrAddNAS</source>
        <translation>Seleziona o aggiungi un NAS</translation>
    </message>
    <message>
        <source>menubar.about</source>
        <translation>Informazioni su Harbrix</translation>
    </message>
    <message>
        <source>menubar.browseFiles</source>
        <translation>  Esplora file...</translation>
    </message>
    <message>
        <source>menubar.checkForUpdates</source>
        <translation>Controlla aggiornamenti...</translation>
    </message>
    <message>
        <source>menubar.icon.accessibility</source>
        <translation>Stato di Harbrix</translation>
    </message>
    <message>
        <source>menubar.mountAll</source>
        <translation>Monta tutto ora</translation>
    </message>
    <message>
        <source>menubar.noConfigs</source>
        <translation>Nessun NAS configurato</translation>
    </message>
    <message>
        <source>menubar.openMainWindow</source>
        <translation>Apri la finestra principale</translation>
    </message>
    <message>
        <source>menubar.openSettings</source>
        <translation>Impostazioni...</translation>
    </message>
    <message>
        <source>menubar.quit</source>
        <translation>Esci da Harbrix</translation>
    </message>
    <message>
        <source>menubar.recentFiles</source>
        <translation>File recenti</translation>
    </message>
    <message>
        <source>menubar.unmountAll</source>
        <translation>Smonta tutto ora</translation>
    </message>
    <message>
        <source>nas.address</source>
        <translation>Indirizzo</translation>
    </message>
    <message>
        <source>nas.addressPlaceholder</source>
        <translation>es. 192.168.1.100</translation>
    </message>
    <message>
        <source>nas.auth</source>
        <translation>Autenticazione</translation>
    </message>
    <message>
        <source>nas.authMethod</source>
        <translation>Metodo di autenticazione</translation>
    </message>
    <message>
        <source>nas.autoMount</source>
        <translation>Monta automaticamente</translation>
    </message>
    <message>
        <source>nas.basicInfo</source>
        <translation>Generale</translation>
    </message>
    <message>
        <source>nas.connectionFailed</source>
        <translation>Connessione non riuscita: %@</translation>
    </message>
    <message>
        <source>nas.connectionSuccess</source>
        <translation>Connessione riuscita (latenza: %@ ms)</translation>
    </message>
    <message>
        <source>nas.customMountPoint</source>
        <translation>Punto di montaggio personalizzato</translation>
    </message>
    <message>
        <source>nas.mount</source>
        <translation>Monta</translation>
    </message>
    <message>
        <source>nas.mountError</source>
        <translation>Problema di montaggio</translation>
    </message>
    <message>
        <source>nas.mountOptions</source>
        <translation>Opzioni di montaggio</translation>
    </message>
    <message>
        <source>nas.mountPointExample1</source>
        <translation>Esempio: ~/HarbrixVolumes/MyNAS (consigliato, creato automaticamente)</translation>
    </message>
    <message>
        <source>nas.mountPointExample2</source>
        <translation>Esempio: /mnt/MyNAS (la cartella va creata manualmente)</translation>
    </message>
    <message>
        <source>nas.mountPointHelp</source>
        <translation>Dove viene montata la condivisione. Lasciare vuoto per usare ~/HarbrixVolumes/&lt;nome&gt;. Nota: le cartelle esterne alla propria cartella home, ad esempio in /mnt/, vanno create manualmente.</translation>
    </message>
    <message>
        <source>nas.mountPointPlaceholder</source>
        <translation>Vuoto: percorso predefinito</translation>
    </message>
    <message>
        <source>nas.mounting</source>
        <translation>Montaggio in corso...</translation>
    </message>
    <message>
        <source>nas.name</source>
        <translation>Nome</translation>
    </message>
    <message>
        <source>nas.namePlaceholder</source>
        <translation>es. NAS di casa</translation>
    </message>
    <message>
        <source>nas.networkBinding</source>
        <translation>Associazione alla rete</translation>
    </message>
    <message>
        <source>nas.networkBinding.currentIP</source>
        <translation>Rete attuale: %@</translation>
    </message>
    <message>
        <source>nas.networkBinding.hint</source>
        <translation>Questo NAS viene montato automaticamente solo nelle reti corrispondenti. Il montaggio manuale è sempre possibile.</translation>
    </message>
    <message>
        <source>nas.networkBinding.ipRange</source>
        <translation>Intervallo IP (CIDR)</translation>
    </message>
    <message>
        <source>nas.networkBinding.ipRange.placeholder</source>
        <translation>es. 192.168.3.0/24</translation>
    </message>
    <message>
        <source>nas.networkBinding.preset.allNetworks</source>
        <translation>Tutte le reti</translation>
    </message>
    <message>
        <source>nas.networkBinding.preset.currentIP</source>
        <translation>IP attuale</translation>
    </message>
    <message>
        <source>nas.networkBinding.preset.currentNetwork</source>
        <translation>Rete attuale</translation>
    </message>
    <message>
        <source>nas.networkBinding.ssid.add</source>
        <translation>Nome del Wi-Fi</translation>
    </message>
    <message>
        <source>nas.networkBinding.strategy</source>
        <translation>Associa in base a</translation>
    </message>
    <message>
        <source>nas.networkMismatch.confirm</source>
        <translation>Connetti comunque</translation>
    </message>
    <message>
        <source>nas.networkMismatch.message</source>
        <translation>La rete attuale non è tra quelle associate a questo NAS, quindi la connessione potrebbe non riuscire. Provare comunque?</translation>
    </message>
    <message>
        <source>nas.networkMismatch.title</source>
        <translation>La rete non corrisponde</translation>
    </message>
    <message>
        <source>nas.openInFinder</source>
        <translation>Apri</translation>
    </message>
    <message>
        <source>nas.password</source>
        <translation>Password</translation>
    </message>
    <message>
        <source>nas.passwordPlaceholder</source>
        <translation>Password di accesso</translation>
    </message>
    <message>
        <source>nas.protocol</source>
        <translation>Protocollo</translation>
    </message>
    <message>
        <source>nas.readOnly</source>
        <translation>Monta in sola lettura</translation>
    </message>
    <message>
        <source>nas.sharePath</source>
        <translation>Percorso della condivisione</translation>
    </message>
    <message>
        <source>nas.sharePathPlaceholder</source>
        <translation>es. /shared/media</translation>
    </message>
    <message>
        <source>nas.smbVersion</source>
        <translation>Versione SMB</translation>
    </message>
    <message>
        <source>nas.testConnection</source>
        <translation>Prova connessione</translation>
    </message>
    <message>
        <source>nas.testingConnection</source>
        <translation>Prova della connessione in corso...</translation>
    </message>
    <message>
        <source>nas.unmount</source>
        <translation>Smonta</translation>
    </message>
    <message>
        <source>nas.username</source>
        <translation>Nome utente</translation>
    </message>
    <message>
        <source>nas.usernamePlaceholder</source>
        <translation>Nome utente di accesso</translation>
    </message>
    <message>
        <source>network.status.allMismatch</source>
        <translation>Rete non corrispondente</translation>
    </message>
    <message>
        <source>network.status.ipMismatch</source>
        <translation>IP non corrispondente</translation>
    </message>
    <message>
        <source>network.status.matched</source>
        <translation>Rete corrispondente</translation>
    </message>
    <message>
        <source>network.status.ssidMismatch</source>
        <translation>SSID non corrispondente</translation>
    </message>
    <message>
        <source>nfs.auth</source>
        <translation>Autenticazione NFS</translation>
    </message>
    <message>
        <source>nfs.error.emptySharePath</source>
        <translation>Il percorso di esportazione NFS non può essere vuoto</translation>
    </message>
    <message>
        <source>nfs.error.invalidArgument</source>
        <translation>mount_nfs ha ricevuto un argomento non valido. Controllare l’indirizzo del server NFS e il percorso di esportazione. Attualmente è supportato solo NFSv4.</translation>
    </message>
    <message>
        <source>nfs.error.sudoRequired</source>
        <translation>Il montaggio NFS richiede i privilegi di root. Configurare sudoers da un terminale per consentire mount_nfs senza password, oppure montare la condivisione manualmente e usare un punto di montaggio personalizzato.</translation>
    </message>
    <message>
        <source>nfs.mountOptions.detail</source>
        <translation>Opzioni fisse: vers=4 (NFSv4), tcp (trasporto TCP), noresvport (porta non privilegiata); per il montaggio in sola lettura si aggiunge ro.</translation>
    </message>
    <message>
        <source>nfs.mountOptions.title</source>
        <translation>Opzioni di montaggio NFSv4</translation>
    </message>
    <message>
        <source>nfs.noAuthNote</source>
        <translation>NFS non richiede nome utente né password. L’accesso è regolato dalla configurazione delle esportazioni (exports) del server NFS.</translation>
    </message>
    <message>
        <source>nfs.sharePath</source>
        <translation>Percorso di esportazione NFS</translation>
    </message>
    <message>
        <source>nfs.sharePathPlaceholder</source>
        <translation>es. / oppure /volume1/shared</translation>
    </message>
    <message>
        <source>nfs.versionNote</source>
        <translation>Attualmente è supportato solo NFSv4 (tramite TCP, da una porta non privilegiata)</translation>
    </message>
    <message>
        <source>notification.action.retry</source>
        <translation>Riprova</translation>
    </message>
    <message>
        <source>notification.event.cacheCleanup</source>
        <translation>Pulizia della cache</translation>
    </message>
    <message>
        <source>notification.event.mountFailure</source>
        <translation>Montaggio non riuscito</translation>
    </message>
    <message>
        <source>notification.event.mountSuccess</source>
        <translation>Montaggio riuscito</translation>
    </message>
    <message>
        <source>notification.event.networkChange</source>
        <translation>Cambio di rete</translation>
    </message>
    <message>
        <source>notification.event.transferComplete</source>
        <translation>Trasferimento completato</translation>
    </message>
    <message>
        <source>notification.event.transferFailed</source>
        <translation>Trasferimento non riuscito</translation>
    </message>
    <message>
        <source>notification.event.unmount</source>
        <translation>Smontaggio</translation>
    </message>
    <message>
        <source>notification.mount.failure.body</source>
        <translation>%1$@: %2$@</translation>
    </message>
    <message>
        <source>notification.mount.failure.title</source>
        <translation>Connessione al NAS non riuscita</translation>
    </message>
    <message>
        <source>notification.mount.success.body</source>
        <translation>%@ è stato montato</translation>
    </message>
    <message>
        <source>notification.mount.success.title</source>
        <translation>NAS connesso</translation>
    </message>
    <message>
        <source>notification.transfer.download.body</source>
        <translation>%@ è stato scaricato</translation>
    </message>
    <message>
        <source>notification.transfer.download.title</source>
        <translation>Download completato</translation>
    </message>
    <message>
        <source>notification.transfer.upload.body</source>
        <translation>%@ è stato caricato sul NAS</translation>
    </message>
    <message>
        <source>notification.transfer.upload.title</source>
        <translation>Caricamento completato</translation>
    </message>
    <message>
        <source>notification.unmount.body</source>
        <translation>%@ è stato smontato</translation>
    </message>
    <message>
        <source>notification.unmount.title</source>
        <translation>NAS disconnesso</translation>
    </message>
    <message>
        <source>settings.advanced.connectionTimeout</source>
        <translation>Tempo massimo di connessione</translation>
    </message>
    <message>
        <source>settings.advanced.retry</source>
        <translation>Nuovi tentativi</translation>
    </message>
    <message>
        <source>settings.advanced.retry.hint</source>
        <translation>Cosa fare dopo un montaggio non riuscito. L’intervallo aumenta a ogni tentativo (attesa esponenziale).</translation>
    </message>
    <message>
        <source>settings.advanced.retryCount</source>
        <translation>Numero di tentativi</translation>
    </message>
    <message>
        <source>settings.advanced.retryInterval</source>
        <translation>Intervallo tra i tentativi</translation>
    </message>
    <message>
        <source>settings.advanced.smb</source>
        <translation>Protocollo SMB</translation>
    </message>
    <message>
        <source>settings.advanced.smbVersion</source>
        <translation>Versione SMB predefinita</translation>
    </message>
    <message>
        <source>settings.advanced.timeout</source>
        <translation>Tempi massimi di attesa</translation>
    </message>
    <message>
        <source>settings.advanced.timeout.hint</source>
        <translation>Tempo massimo di attesa per la connessione a un NAS. Un valore più alto aiuta nelle reti lente.</translation>
    </message>
    <message>
        <source>settings.cache.autoCleanup</source>
        <translation>Pulizia automatica</translation>
    </message>
    <message>
        <source>settings.cache.autoCleanup.toggle</source>
        <translation>Pulisci automaticamente</translation>
    </message>
    <message>
        <source>settings.cache.cleanupNow</source>
        <translation>Pulisci ora</translation>
    </message>
    <message>
        <source>settings.cache.clearAll</source>
        <translation>Svuota tutta la cache</translation>
    </message>
    <message>
        <source>settings.cache.diskSpace</source>
        <translation>Spazio libero su disco</translation>
    </message>
    <message>
        <source>settings.cache.entryCount</source>
        <translation>File nella cache</translation>
    </message>
    <message>
        <source>settings.cache.hitRate</source>
        <translation>Percentuale di riscontri</translation>
    </message>
    <message>
        <source>settings.cache.lastCleanup</source>
        <translation>Ultima pulizia</translation>
    </message>
    <message>
        <source>settings.cache.lastRemoved</source>
        <translation>File rimossi</translation>
    </message>
    <message>
        <source>settings.cache.maxSize</source>
        <translation>Dimensione massima della cache</translation>
    </message>
    <message>
        <source>settings.cache.totalSize</source>
        <translation>Spazio utilizzato</translation>
    </message>
    <message>
        <source>settings.cache.usage</source>
        <translation>Utilizzo della cache</translation>
    </message>
    <message>
        <source>settings.keepAlive.enabled</source>
        <translation>Mantieni attive le connessioni</translation>
    </message>
    <message>
        <source>settings.keepAlive.hint</source>
        <translation>Harbrix controlla periodicamente la connessione ai NAS montati. Se viene persa mentre si è ancora nella rete domestica, prova a rimontarli automaticamente.</translation>
    </message>
    <message>
        <source>settings.keepAlive.interval</source>
        <translation>Intervallo di controllo</translation>
    </message>
    <message>
        <source>settings.keepAlive.title</source>
        <translation>Mantenimento della connessione</translation>
    </message>
    <message>
        <source>settings.language.app</source>
        <translation>Lingua dell’applicazione</translation>
    </message>
    <message>
        <source>settings.language.disclaimer</source>
        <translation>Alcune traduzioni potrebbero essere incomplete; i testi mancanti appaiono in inglese. Continuiamo a migliorarle e ci scusiamo per il disagio.</translation>
    </message>
    <message>
        <source>settings.language.restartHint</source>
        <translation>Dopo aver cambiato lingua si consiglia di riavviare l’applicazione affinché la modifica abbia effetto ovunque.</translation>
    </message>
    <message>
        <source>settings.language.select</source>
        <translation>Scegli la lingua</translation>
    </message>
    <message>
        <source>settings.language.supported</source>
        <translation>Informazioni sulle traduzioni</translation>
    </message>
    <message>
        <source>settings.launch.atLogin</source>
        <translation>Avvia all’accesso</translation>
    </message>
    <message>
        <source>settings.launch.atLogin.hint</source>
        <translation>Harbrix si avvia automaticamente all’accesso e resta nel vassoio di sistema.</translation>
    </message>
    <message>
        <source>settings.launch.autoMount</source>
        <translation>Montaggio automatico</translation>
    </message>
    <message>
        <source>settings.launch.autoMount.hint</source>
        <translation>All’avvio dell’applicazione vengono montati automaticamente tutti i NAS abilitati la cui rete corrisponde.</translation>
    </message>
    <message>
        <source>settings.launch.autoMount.toggle</source>
        <translation>Monta all’avvio</translation>
    </message>
    <message>
        <source>settings.launch.behavior</source>
        <translation>Avvio</translation>
    </message>
    <message>
        <source>settings.launch.stability.binding</source>
        <translation>Associazione alla rete: montaggio automatico solo nelle reti domestiche corrispondenti</translation>
    </message>
    <message>
        <source>settings.launch.stability.network</source>
        <translation>Cambio di rete: attende 2 secondi di stabilità prima di montare</translation>
    </message>
    <message>
        <source>settings.launch.stability.retry</source>
        <translation>Attesa esponenziale: nuovi tentativi dopo 10s→30s→60s→300s</translation>
    </message>
    <message>
        <source>settings.launch.stability.title</source>
        <translation>Come le connessioni restano stabili</translation>
    </message>
    <message>
        <source>settings.launch.stability.wake</source>
        <translation>Sospensione: rimonta automaticamente alla riattivazione del sistema</translation>
    </message>
    <message>
        <source>settings.logging.actions</source>
        <translation>Azioni</translation>
    </message>
    <message>
        <source>settings.logging.clear</source>
        <translation>Cancella registri</translation>
    </message>
    <message>
        <source>settings.logging.debug</source>
        <translation>Modalità di debug</translation>
    </message>
    <message>
        <source>settings.logging.debug.hint</source>
        <translation>Registra informazioni di debug dettagliate; può influire sulle prestazioni.</translation>
    </message>
    <message>
        <source>settings.logging.export</source>
        <translation>Esporta registri</translation>
    </message>
    <message>
        <source>settings.logging.file</source>
        <translation>Scrittura su file</translation>
    </message>
    <message>
        <source>settings.logging.fileSize</source>
        <translation>Dimensione dei file di registro</translation>
    </message>
    <message>
        <source>settings.logging.fileToggle</source>
        <translation>Scrivi su un file di registro</translation>
    </message>
    <message>
        <source>settings.logging.level</source>
        <translation>Livello di registrazione</translation>
    </message>
    <message>
        <source>settings.logging.minLevel</source>
        <translation>Livello minimo</translation>
    </message>
    <message>
        <source>settings.logging.mode</source>
        <translation>Modalità di registrazione</translation>
    </message>
    <message>
        <source>settings.notification.enableAll</source>
        <translation>Abilita tutte le notifiche</translation>
    </message>
    <message>
        <source>settings.notification.events</source>
        <translation>Eventi</translation>
    </message>
    <message>
        <source>settings.notification.global</source>
        <translation>Generale</translation>
    </message>
    <message>
        <source>settings.notification.reset</source>
        <translation>Ripristina valori predefiniti</translation>
    </message>
    <message>
        <source>settings.notification.systemHint</source>
        <translation>Assicurarsi che le impostazioni di sistema consentano a Harbrix di inviare notifiche.</translation>
    </message>
    <message>
        <source>settings.tab.advanced</source>
        <translation>Avanzate</translation>
    </message>
    <message>
        <source>settings.tab.cache</source>
        <translation>Cache</translation>
    </message>
    <message>
        <source>settings.tab.language</source>
        <translation>Lingua</translation>
    </message>
    <message>
        <source>settings.tab.launch</source>
        <translation>Avvio</translation>
    </message>
    <message>
        <source>settings.tab.logging</source>
        <translation>Registri</translation>
    </message>
    <message>
        <source>settings.tab.notifications</source>
        <translation>Notifiche</translation>
    </message>
    <message>
        <source>status.failed</source>
        <translation>Non riuscito</translation>
    </message>
    <message>
        <source>status.failed.a11y</source>
        <translation>Montaggio non riuscito</translation>
    </message>
    <message>
        <source>status.idle</source>
        <translation>Inattivo</translation>
    </message>
    <message>
        <source>status.mounted</source>
        <translation>Montato</translation>
    </message>
    <message>
        <source>status.mounting</source>
        <translation>Montaggio...</translation>
    </message>
    <message>
        <source>status.offline</source>
        <translation>Non in linea</translation>
    </message>
    <message>
        <source>status.unmounting</source>
        <translation>Smontaggio...</translation>
    </message>
    <message>
        <source>status.unmounting.a11y</source>
        <translation>Smontaggio</translation>
    </message>
    <message numerus="yes">
        <source>transfer.activeCount</source>
        <translation>
            <numerusform>%lld attivo</numerusform>
            <numerusform>%lld attivi</numerusform>
        </translation>
    </message>
    <message>
        <source>transfer.cancelled</source>
        <translation>Annullato</translation>
    </message>
    <message>
        <source>transfer.clearCompleted</source>
        <translation>Rimuovi i trasferimenti completati</translation>
    </message>
    <message>
        <source>transfer.done</source>
        <translation>Completato</translation>
    </message>
    <message>
        <source>transfer.eta</source>
        <translation>Tempo rimanente: %@</translation>
    </message>
    <message>
        <source>transfer.failed</source>
        <translation>Non riuscito</translation>
    </message>
    <message>
        <source>transfer.noTransfers</source>
        <translation>Nessun trasferimento</translation>
    </message>
    <message>
        <source>transfer.paused</source>
        <translation>In pausa</translation>
    </message>
    <message>
        <source>transfer.queued</source>
        <translation>In coda</translation>
    </message>
    <message>
        <source>transfer.stop.confirm</source>
        <translation>Interrompi</translation>
    </message>
    <message>
        <source>transfer.stop.message</source>
        <translation>Ciò che non è ancora stato copiato non lo sarà.</translation>
    </message>
    <message>
        <source>transfer.stop.title</source>
        <translation>Interrompere i trasferimenti?</translation>
    </message>
    <message>
        <source>transfer.title</source>
        <translation>Trasferimenti</translation>
    </message>
    <message>
        <source>window.about.title</source>
        <translation>Informazioni su Harbrix</translation>
    </message>
    <message>
        <source>window.browser.title</source>
        <translation>Esplora file</translation>
    </message>
    <message>
        <source>window.main.title</source>
        <translation>Harbrix</translation>
    </message>
    <message>
        <source>window.settings.title</source>
        <translation>Impostazioni</translation>
    </message>
    <message>
        <source>Loading...</source>
        <translation>Caricamento...</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nome</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Dimensione</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Modificato</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Apri</translation>
    </message>
    <message>
        <source>Show in Finder</source>
        <translation>Mostra nel gestore file</translation>
    </message>
    <message>
        <source>Empty Folder</source>
        <translation>Cartella vuota</translation>
    </message>
    <message>
        <source>Drag files here to upload</source>
        <translation>Trascina qui i file da caricare</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>main.discardChanges</source>
        <translation>Scarta modifiche</translation>
    </message>
    <message>
        <source>main.edited</source>
        <translation>Modificato</translation>
    </message>
    <message>
        <source>main.notSaved</source>
        <translation>Impossibile salvare le modifiche: %@. Andranno perse alla chiusura di Harbrix.</translation>
    </message>
    <message>
        <source>notification.settingsDamaged.body</source>
        <translation>Il file è conservato come %@</translation>
    </message>
    <message>
        <source>notification.settingsDamaged.title</source>
        <translation>Le impostazioni erano danneggiate</translation>
    </message>
    <message>
        <source>官网</source>
        <translation>Sito web</translation>
    </message>
    <message>
        <source>反馈</source>
        <translation>Commenti</translation>
    </message>
    <message>
        <source>文档</source>
        <translation>Documentazione</translation>
    </message>
</context>
</TS>
