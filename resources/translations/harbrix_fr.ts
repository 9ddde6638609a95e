<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="zh_CN">
<context>
    <name>texts</name>
    <message>
        <source>browser.download</source>
        <translation>Télécharger</translation>
    </message>
    <message>
        <source>browser.downloadEllipsis</source>
        <translation>Télécharger...</translation>
    </message>
    <message>
        <source>browser.empty.hint</source>
        <translation>Montez un NAS depuis la fenêtre principale pour parcourir ses fichiers.</translation>
    </message>
    <message>
        <source>browser.empty.title</source>
        <translation>Aucun NAS monté</translation>
    </message>
    <message>
        <source>browser.fileExists</source>
        <translation>Le fichier existe déjà</translation>
    </message>
    <message>
        <source>browser.fileExistsMessage</source>
        <translation>« %@ » existe déjà à cet emplacement.</translation>
    </message>
    <message>
        <source>browser.open</source>
        <translation>Ouvrir</translation>
    </message>
    <message>
        <source>browser.openInFinder</source>
        <translation>Ouvrir dans le gestionnaire de fichiers</translation>
    </message>
    <message>
        <source>browser.overwrite</source>
        <translation>Remplacer</translation>
    </message>
    <message>
        <source>browser.quickLook</source>
        <translation>Aperçu</translation>
    </message>
    <message>
        <source>browser.rename</source>
        <translation>Renommer</translation>
    </message>
    <message>
        <source>browser.showInFinder</source>
        <translation>Afficher dans le gestionnaire de fichiers</translation>
    </message>
    <message>
        <source>browser.skip</source>
        <translation>Ignorer</translation>
    </message>
    <message>
        <source>common.add</source>
        <translation>Ajouter</translation>
    </message>
    <message>
        <source>common.cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>common.close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>common.delete</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>common.save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>filesystem.offline.empty</source>
        <translation>Le NAS est déconnecté. Aucun fichier de ce dossier n’est en cache.</translation>
    </message>
    <message>
        <source>language.system</source>
        <translation>Langue du système</translation>
    </message>
    <message>
        <source>main.about</source>
        <translation>À propos de Harbrix</translation>
    </message>
    <message>
        <source>main.addNAS</source>
        <translation>Ajouter un NAS</translation>
    </message>
    <message>
        <source>main.addNASTooltip</source>
        <translation>Ajouter une nouvelle configuration de NAS</translation>
    </message>
    <message>
        <source>main.emptyDetailHint</source>
        <translation>Choisissez une configuration dans la liste de gauche ou cliquez sur le bouton ci-dessus pour ajouter un nouveau NAS.</translation>
    </message>
    <message>
        <source>main.mountedFoldersTitle</source>
        <translation>Dossiers montés</translation>
    </message>
    <message>
        <source>main.nasList</source>
        <translation>Liste des NAS</translation>
    </message>
    <message>
        <source>main.noConfigs</source>
        <translation>Aucun NAS configuré</translation>
    </message>
    <message>
        <source>main.openInFinder</source>
        <translation>Ouvrir le dossier</translation>
    </message>
    <message>
        <source>main.openSettings</source>
        <translation>Ouvrir les paramètres</translation>
    </message>
    <message>
        <source>main.selectOrAddNAS</source>
        <translation>Sélectionner ou ajouter un NAS</translation>
    </message>
    <message>
        <source>menubar.about</source>
        <translation>À propos de Harbrix</translation>
    </message>
    <message>
        <source>menubar.browseFiles</source>
        <translation>  Parcourir les fichiers...</translation>
    </message>
    <message>
        <source>menubar.checkForUpdates</source>
        <translation>Rechercher des mises à jour...</translation>
    </message>
    <message>
        <source>menubar.icon.accessibility</source>
        <translation>État de Harbrix</translation>
    </message>
    <message>
        <source>menubar.mountAll</source>
        <translation>Tout monter maintenant</translation>
    </message>
    <message>
        <source>menubar.noConfigs</source>
        <translation>Aucun NAS configuré</translation>
    </message>
    <message>
        <source>menubar.openMainWindow</source>
        <translation>Ouvrir la fenêtre principale</translation>
    </message>
    <message>
        <source>menubar.openSettings</source>
        <translation>Paramètres...</translation>
    </message>
    <message>
        <source>menubar.quit</source>
        <translation>Quitter Harbrix</translation>
    </message>
    <message>
        <source>menubar.recentFiles</source>
        <translation>Fichiers récents</translation>
    </message>
    <message>
        <source>menubar.unmountAll</source>
        <translation>Tout démonter maintenant</translation>
    </message>
    <message>
        <source>nas.address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>nas.addressPlaceholder</source>
        <translation>p. ex. 192.168.1.100</translation>
    </message>
    <message>
        <source>nas.auth</source>
        <translation>Authentification</translation>
    </message>
    <message>
        <source>nas.authMethod</source>
        <translation>Méthode d’authentification</translation>
    </message>
    <message>
        <source>nas.autoMount</source>
        <translation>Monter automatiquement</translation>
    </message>
    <message>
        <source>nas.basicInfo</source>
        <translation>Général</translation>
    </message>
    <message>
        <source>nas.connectionFailed</source>
        <translation>Échec de la connexion : %@</translation>
    </message>
    <message>
        <source>nas.connectionSuccess</source>
        <translation>Connexion réussie (latence : %@ ms)</translation>
    </message>
    <message>
        <source>nas.customMountPoint</source>
        <translation>Point de montage personnalisé</translation>
    </message>
    <message>
        <source>nas.mount</source>
        <translation>Monter</translation>
    </message>
    <message>
        <source>nas.mountError</source>
        <translation>Problème de montage</translation>
    </message>
    <message>
        <source>nas.mountOptions</source>
        <translation>Options de montage</translation>
    </message>
    <message>
        <source>nas.mountPointExample1</source>
        <translation>Exemple : ~/HarbrixVolumes/MyNAS (recommandé, créé automatiquement)</translation>
    </message>
    <message>
        <source>nas.mountPointExample2</source>
        <translation>Exemple : /mnt/MyNAS (le dossier doit être créé manuellement)</translation>
    </message>
    <message>
        <source>nas.mountPointHelp</source>
        <translation>Emplacement où le partage est monté. Laissez vide pour utiliser ~/HarbrixVolumes/&lt;nom&gt;. Remarque : les dossiers situés hors de votre dossier personnel, par exemple dans /mnt/, doivent être créés manuellement.</translation>
    </message>
    <message>
        <source>nas.mountPointPlaceholder</source>
        <translation>Vide : chemin par défaut</translation>
    </message>
    <message>
        <source>nas.mounting</source>
        <translation>Montage en cours...</translation>
    </message>
    <message>
        <source>nas.name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>nas.namePlaceholder</source>
        <translation>p. ex. NAS de la maison</translation>
    </message>
    <message>
        <source>nas.networkBinding</source>
        <translation>Restriction réseau</translation>
    </message>
    <message>
        <source>nas.networkBinding.currentIP</source>
        <translation>Réseau actuel : %@</translation>
    </message>
    <message>
        <source>nas.networkBinding.hint</source>
        <translation>Ce NAS n’est monté automatiquement que sur les réseaux correspondants. Le montage manuel reste toujours possible.</translation>
    </message>
    <message>
        <source>nas.networkBinding.ipRange</source>
        <translation>Plage d’adresses IP (CIDR)</translation>
    </message>
    <message>
        <source>nas.networkBinding.ipRange.placeholder</source>
        <translation>p. ex. 192.168.3.0/24</translation>
    </message>
    <message>
        <source>nas.networkBinding.preset.allNetworks</source>
        <translation>Tous les réseaux</translation>
    </message>
    <message>
        <source>nas.networkBinding.preset.currentIP</source>
        <translation>IP actuelle</translation>
    </message>
    <message>
        <source>nas.networkBinding.preset.currentNetwork</source>
        <translation>Réseau actuel</translation>
    </message>
    <message>
        <source>nas.networkBinding.ssid.add</source>
        <translation>Nom du Wi-Fi</translation>
    </message>
    <message>
        <source>nas.networkBinding.strategy</source>
        <translation>Restreindre selon</translation>
    </message>
    <message>
        <source>nas.networkMismatch.confirm</source>
        <translation>Connecter quand même</translation>
    </message>
    <message>
        <source>nas.networkMismatch.message</source>
        <translation>Le réseau actuel ne fait pas partie de ceux autorisés pour ce NAS ; la connexion risque d’échouer. Essayer quand même ?</translation>
    </message>
    <message>
        <source>nas.networkMismatch.title</source>
        <translation>Réseau non correspondant</translation>
    </message>
    <message>
        <source>nas.openInFinder</source>
        <translation>Ouvrir</translation>
    </message>
    <message>
        <source>nas.password</source>
        <translation>Mot de passe</translation>
    </message>
    <message>
        <source>nas.passwordPlaceholder</source>
        <translation>Mot de passe de connexion</translation>
    </message>
    <message>
        <source>nas.protocol</source>
        <translation>Protocole</translation>
    </message>
    <message>
        <source>nas.readOnly</source>
        <translation>Monter en lecture seule</translation>
    </message>
    <message>
        <source>nas.sharePath</source>
        <translation>Chemin du partage</translation>
    </message>
    <message>
        <source>nas.sharePathPlaceholder</source>
        <translation>p. ex. /shared/media</translation>
    </message>
    <message>
        <source>nas.smbVersion</source>
        <translation>Version de SMB</translation>
    </message>
    <message>
        <source>nas.testConnection</source>
        <translation>Tester la connexion</translation>
    </message>
    <message>
        <source>nas.testingConnection</source>
        <translation>Test de la connexion en cours...</translation>
    </message>
    <message>
        <source>nas.unmount</source>
        <translation>Démonter</translation>
    </message>
    <message>
        <source>nas.username</source>
        <translation>Nom d’utilisateur</translation>
    </message>
    <message>
        <source>nas.usernamePlaceholder</source>
        <translation>Identifiant de connexion</translation>
    </message>
    <message>
        <source>network.status.allMismatch</source>
        <translation>Réseau différent</translation>
    </message>
    <message>
        <source>network.status.ipMismatch</source>
        <translation>IP différente</translation>
    </message>
    <message>
        <source>network.status.matched</source>
        <translation>Réseau correspondant</translation>
    </message>
    <message>
        <source>network.status.ssidMismatch</source>
        <translation>SSID différent</translation>
    </message>
    <message>
        <source>nfs.auth</source>
        <translation>Authentification NFS</translation>
    </message>
    <message>
        <source>nfs.error.emptySharePath</source>
        <translation>Le chemin d’export NFS ne doit pas être vide</translation>
    </message>
    <message>
        <source>nfs.error.invalidArgument</source>
        <translation>mount_nfs a reçu un argument non valide. Vérifiez l’adresse du serveur NFS et le chemin d’export. Seul NFSv4 est actuellement pris en charge.</translation>
    </message>
    <message>
        <source>nfs.error.sudoRequired</source>
        <translation>Le montage NFS nécessite les droits root. Configurez sudoers dans un terminal pour autoriser mount_nfs sans mot de passe, ou montez le partage manuellement et utilisez un point de montage personnalisé.</translation>
    </message>
    <message>
        <source>nfs.mountOptions.detail</source>
        <translation>Options fixes : vers=4 (NFSv4), tcp (transport TCP), noresvport (port non privilégié) ; ro s’y ajoute pour un montage en lecture seule.</translation>
    </message>
    <message>
        <source>nfs.mountOptions.title</source>
        <translation>Options de montage NFSv4</translation>
    </message>
    <message>
        <source>nfs.noAuthNote</source>
        <translation>NFS ne nécessite ni nom d’utilisateur ni mot de passe. Les droits d’accès sont définis par la configuration des exports (exports) du serveur NFS.</translation>
    </message>
    <message>
        <source>nfs.sharePath</source>
        <translation>Chemin d’export NFS</translation>
    </message>
    <message>
        <source>nfs.sharePathPlaceholder</source>
        <translation>p. ex. / ou /volume1/shared</translation>
    </message>
    <message>
        <source>nfs.versionNote</source>
        <translation>Seul NFSv4 est actuellement pris en charge (via TCP, depuis un port non privilégié)</translation>
    </message>
    <message>
        <source>notification.action.retry</source>
        <translation>Réessayer</translation>
    </message>
    <message>
        <source>notification.event.cacheCleanup</source>
        <translation>Nettoyage du cache</translation>
    </message>
    <message>
        <source>notification.event.mountFailure</source>
        <translation>Échec du montage</translation>
    </message>
    <message>
        <source>notification.event.mountSuccess</source>
        <translation>Montage réussi</translation>
    </message>
    <message>
        <source>notification.event.networkChange</source>
        <translation>Changement de réseau</translation>
    </message>
    <message>
        <source>notification.event.transferComplete</source>
        <translation>Transfert terminé</translation>
    </message>
    <message>
        <source>notification.event.transferFailed</source>
        <translation>Échec du transfert</translation>
    </message>
    <message>
        <source>notification.event.unmount</source>
        <translation>Démontage</translation>
    </message>
    <message>
        <source>notification.mount.failure.body</source>
        <translation>%1$@ : %2$@</translation>
    </message>
    <message>
        <source>notification.mount.failure.title</source>
        <translation>Échec de la connexion au NAS</translation>
    </message>
    <message>
        <source>notification.mount.success.body</source>
        <translation>%@ a été monté</translation>
    </message>
    <message>
        <source>notification.mount.success.title</source>
        <translation>NAS connecté</translation>
    </message>
    <message>
        <source>notification.transfer.download.body</source>
        <translation>%@ a été téléchargé</translation>
    </message>
    <message>
        <source>notification.transfer.download.title</source>
        <translation>Téléchargement terminé</translation>
    </message>
    <message>
        <source>notification.transfer.upload.body</source>
        <translation>%@ a été envoyé sur le NAS</translation>
    </message>
    <message>
        <source>notification.transfer.upload.title</source>
        <translation>Envoi terminé</translation>
    </message>
    <message>
        <source>notification.unmount.body</source>
        <translation>%@ a été démonté</translation>
    </message>
    <message>
        <source>notification.unmount.title</source>
        <translation>NAS déconnecté</translation>
    </message>
    <message>
        <source>settings.advanced.connectionTimeout</source>
        <translation>Délai de connexion</translation>
    </message>
    <message>
        <source>settings.advanced.retry</source>
        <translation>Nouvelles tentatives</translation>
    </message>
    <message>
        <source>settings.advanced.retry.hint</source>
        <translation>Stratégie appliquée après l’échec d’un montage. L’intervalle augmente à chaque tentative (attente exponentielle).</translation>
    </message>
    <message>
        <source>settings.advanced.retryCount</source>
        <translation>Nombre de tentatives</translation>
    </message>
    <message>
        <source>settings.advanced.retryInterval</source>
        <translation>Intervalle entre les tentatives</translation>
    </message>
    <message>
        <source>settings.advanced.smb</source>
        <translation>Protocole SMB</translation>
    </message>
    <message>
        <source>settings.advanced.smbVersion</source>
        <translation>Version de SMB par défaut</translation>
    </message>
    <message>
        <source>settings.advanced.timeout</source>
        <translation>Délais d’attente</translation>
    </message>
    <message>
        <source>settings.advanced.timeout.hint</source>
        <translation>Durée maximale d’attente d’une connexion au NAS. Un délai plus long est utile sur les réseaux lents.</translation>
    </message>
    <message>
        <source>settings.cache.autoCleanup</source>
        <translation>Nettoyage automatique</translation>
    </message>
    <message>
        <source>settings.cache.autoCleanup.toggle</source>
        <translation>Nettoyer automatiquement</translation>
    </message>
    <message>
        <source>settings.cache.cleanupNow</source>
        <translation>Nettoyer maintenant</translation>
    </message>
    <message>
        <source>settings.cache.clearAll</source>
        <translation>Vider tout le cache</translation>
    </message>
    <message>
        <source>settings.cache.diskSpace</source>
        <translation>Espace disque disponible</translation>
    </message>
    <message>
        <source>settings.cache.entryCount</source>
        <translation>Fichiers en cache</translation>
    </message>
    <message>
        <source>settings.cache.hitRate</source>
        <translation>Taux de succès</translation>
    </message>
    <message>
        <source>settings.cache.lastCleanup</source>
        <translation>Dernier nettoyage</translation>
    </message>
    <message>
        <source>settings.cache.lastRemoved</source>
        <translation>Fichiers supprimés</translation>
    </message>
    <message>
        <source>settings.cache.maxSize</source>
        <translation>Taille maximale du cache</translation>
    </message>
    <message>
        <source>settings.cache.totalSize</source>
        <translation>Espace utilisé</translation>
    </message>
    <message>
        <source>settings.cache.usage</source>
        <translation>Utilisation du cache</translation>
    </message>
    <message>
        <source>settings.keepAlive.enabled</source>
        <translation>Maintenir les connexions</translation>
    </message>
    <message>
        <source>settings.keepAlive.hint</source>
        <translation>Harbrix vérifie régulièrement la connexion aux NAS montés. Si elle est perdue alors que vous êtes toujours sur votre réseau domestique, Harbrix tente de remonter le NAS automatiquement.</translation>
    </message>
    <message>
        <source>settings.keepAlive.interval</source>
        <translation>Intervalle de vérification</translation>
    </message>
    <message>
        <source>settings.keepAlive.title</source>
        <translation>Maintien de la connexion</translation>
    </message>
    <message>
        <source>settings.language.app</source>
        <translation>Langue de l’application</translation>
    </message>
    <message>
        <source>settings.language.disclaimer</source>
        <translation>Certaines traductions peuvent être incomplètes ; les textes manquants s’affichent en anglais. Nous continuons à les améliorer et vous prions de nous excuser pour la gêne occasionnée.</translation>
    </message>
    <message>
        <source>settings.language.restartHint</source>
        <translation>Après un changement de langue, il est conseillé de redémarrer l’application afin qu’il s’applique partout.</translation>
    </message>
    <message>
        <source>settings.language.select</source>
        <translation>Choisir la langue</translation>
    </message>
    <message>
        <source>settings.language.supported</source>
        <translation>À propos des traductions</translation>
    </message>
    <message>
        <source>settings.launch.atLogin</source>
        <translation>Lancer à l’ouverture de session</translation>
    </message>
    <message>
        <source>settings.launch.atLogin.hint</source>
        <translation>Harbrix démarre automatiquement à l’ouverture de votre session et reste dans la zone de notification.</translation>
    </message>
    <message>
        <source>settings.launch.autoMount</source>
        <translation>Montage automatique</translation>
    </message>
    <message>
        <source>settings.launch.autoMount.hint</source>
        <translation>Au démarrage, tous les NAS activés dont le réseau correspond sont montés automatiquement.</translation>
    </message>
    <message>
        <source>settings.launch.autoMount.toggle</source>
        <translation>Monter au démarrage</translation>
    </message>
    <message>
        <source>settings.launch.behavior</source>
        <translation>Démarrage</translation>
    </message>
    <message>
        <source>settings.launch.stability.binding</source>
        <translation>Restriction réseau : montage automatique uniquement sur les réseaux domestiques correspondants</translation>
    </message>
    <message>
        <source>settings.launch.stability.network</source>
        <translation>Changement de réseau : attend 2 secondes de stabilité avant de monter</translation>
    </message>
    <message>
        <source>settings.launch.stability.retry</source>
        <translation>Attente exponentielle : nouvelles tentatives après 10s→30s→60s→300s</translation>
    </message>
    <message>
        <source>settings.launch.stability.title</source>
        <translation>Comment les connexions restent stables</translation>
    </message>
    <message>
        <source>settings.launch.stability.wake</source>
        <translation>Mise en veille : remonte automatiquement les NAS au réveil du système</translation>
    </message>
    <message>
        <source>settings.logging.actions</source>
        <translation>Actions</translation>
    </message>
    <message>
        <source>settings.logging.clear</source>
        <translation>Effacer les journaux</translation>
    </message>
    <message>
        <source>settings.logging.debug</source>
        <translation>Mode débogage</translation>
    </message>
    <message>
        <source>settings.logging.debug.hint</source>
        <translation>Enregistre des informations de débogage détaillées ; cela peut nuire aux performances.</translation>
    </message>
    <message>
        <source>settings.logging.export</source>
        <translation>Exporter les journaux</translation>
    </message>
    <message>
        <source>settings.logging.file</source>
        <translation>Sortie vers un fichier</translation>
    </message>
    <message>
        <source>settings.logging.fileSize</source>
        <translation>Taille des fichiers journaux</translation>
    </message>
    <message>
        <source>settings.logging.fileToggle</source>
        <translation>Écrire dans un fichier journal</translation>
    </message>
    <message>
        <source>settings.logging.level</source>
        <translation>Niveau de journalisation</translation>
    </message>
    <message>
        <source>settings.logging.minLevel</source>
        <translation>Niveau minimal</translation>
    </message>
    <message>
        <source>settings.logging.mode</source>
        <translation>Mode de journalisation</translation>
    </message>
    <message>
        <source>settings.notification.enableAll</source>
        <translation>Activer toutes les notifications</translation>
    </message>
    <message>
        <source>settings.notification.events</source>
        <translation>Événements</translation>
    </message>
    <message>
        <source>settings.notification.global</source>
        <translation>Général</translation>
    </message>
    <message>
        <source>settings.notification.reset</source>
        <translation>Rétablir les valeurs par défaut</translation>
    </message>
    <message>
        <source>settings.notification.systemHint</source>
        <translation>Vérifiez que les paramètres du système autorisent les notifications de Harbrix.</translation>
    </message>
    <message>
        <source>settings.tab.advanced</source>
        <translation>Avancé</translation>
    </message>
    <message>
        <source>settings.tab.cache</source>
        <translation>Cache</translation>
    </message>
    <message>
        <source>settings.tab.language</source>
        <translation>Langue</translation>
    </message>
    <message>
        <source>settings.tab.launch</source>
        <translation>Démarrage</translation>
    </message>
    <message>
        <source>settings.tab.logging</source>
        <translation>Journaux</translation>
    </message>
    <message>
        <source>settings.tab.notifications</source>
        <translation>Notifications</translation>
    </message>
    <message>
        <source>status.failed</source>
        <translation>Échec</translation>
    </message>
    <message>
        <source>status.failed.a11y</source>
        <translation>Échec du montage</translation>
    </message>
    <message>
        <source>status.idle</source>
        <translation>Inactif</translation>
    </message>
    <message>
        <source>status.mounted</source>
        <translation>Monté</translation>
    </message>
    <message>
        <source>status.mounting</source>
        <translation>Montage...</translation>
    </message>
    <message>
        <source>status.offline</source>
        <translation>Hors ligne</translation>
    </message>
    <message>
        <source>status.unmounting</source>
        <translation>Démontage...</translation>
    </message>
    <message>
        <source>status.unmounting.a11y</source>
        <translation>Démontage</translation>
    </message>
    <message numerus="yes">
        <source>transfer.activeCount</source>
        <translation>
            <numerusform>%lld actif</numerusform>
            <numerusform>%lld actifs</numerusform>
        </translation>
    </message>
    <message>
        <source>transfer.cancelled</source>
        <translation>Annulé</translation>
    </message>
    <message>
        <source>transfer.clearCompleted</source>
        <translation>Effacer les transferts terminés</translation>
    </message>
    <message>
        <source>transfer.done</source>
        <translation>Terminé</translation>
    </message>
    <message>
        <source>transfer.eta</source>
        <translation>Temps restant : %@</translation>
    </message>
    <message>
        <source>transfer.failed</source>
        <translation>Échec</translation>
    </message>
    <message>
        <source>transfer.noTransfers</source>
        <translation>Aucun transfert</translation>
    </message>
    <message>
        <source>transfer.paused</source>
        <translation>En pause</translation>
    </message>
    <message>
        <source>transfer.queued</source>
        <translation>En attente</translation>
    </message>
    <message>
        <source>transfer.stop.confirm</source>
        <translation>Arrêter</translation>
    </message>
    <message>
        <source>transfer.stop.message</source>
        <translation>Ce qui n’est pas encore copié ne le sera pas.</translation>
    </message>
    <message>
        <source>transfer.stop.title</source>
        <translation>Arrêter les transferts ?</translation>
    </message>
    <message>
        <source>transfer.title</source>
        <translation>Transferts</translation>
    </message>
    <message>
        <source>window.about.title</source>
        <translation>À propos de Harbrix</translation>
    </message>
    <message>
        <source>window.browser.title</source>
        <translation>Navigateur de fichiers</translation>
    </message>
    <message>
        <source>window.main.title</source>
        <translation>Harbrix</translation>
    </message>
    <message>
        <source>window.settings.title</source>
        <translation>Paramètres</translation>
    </message>
    <message>
        <source>Loading...</source>
        <translation>Chargement...</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Taille</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Modifié</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Ouvrir</translation>
    </message>
    <message>
        <source>Show in Finder</source>
        <translation>Afficher dans le gestionnaire de fichiers</translation>
    </message>
    <message>
        <source>Empty Folder</source>
        <translation>Dossier vide</translation>
    </message>
    <message>
        <source>Drag files here to upload</source>
        <translation>Glissez des fichiers ici pour les envoyer</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>main.discardChanges</source>
        <translation>Ignorer les modifications</translation>
    </message>
    <message>
        <source>main.edited</source>
        <translation>Modifié</translation>
    </message>
    <message>
        <source>main.notSaved</source>
        <translation>Impossible d’enregistrer les modifications : %@. Elles seront perdues à la fermeture de Harbrix.</translation>
    </message>
    <message>
        <source>notification.settingsDamaged.body</source>
        <translation>Le fichier est conservé sous %@</translation>
    </message>
    <message>
        <source>notification.settingsDamaged.title</source>
        <translation>Les réglages étaient endommagés</translation>
    </message>
    <message>
        <source>官网</source>
        <translation>Site web</translation>
    </message>
    <message>
        <source>反馈</source>
        <translation>Commentaires</translation>
    </message>
    <message>
        <source>文档</source>
        <translation>Documentation</translation>
    </message>
</context>
</TS>
